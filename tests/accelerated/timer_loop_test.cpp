// Whole days of the timer loop, on a clock on which an hour takes a tenth of a second. How often
// callbacks run is exact; a busy machine only makes the waits longer, never shorter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/recorded_log.h"
#include "support/timer_internals.h"

namespace {

using std::chrono::hours;
using test_support::Happening;
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::system_clock;
using Texts = std::vector<std::string>;

constexpr char kLoopLine[] =
    "log 3 BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";

/// Longer than any test needs: ten minutes of real time.
constexpr hours kPatience{6000};

class TimerLoop : public testing::Test {
protected:
    /// The loop is stopped, wherever it is: a Stop right before its wait is only seen after it.
    ~TimerLoop() override { manager->Stop(); }

    /// A callback that notes its name.
    void Register(const std::string& name, int intervalHours) {
        manager->RegisterReportCallback([this, name] { timeline.Note(name); }, intervalHours);
    }

    /// Starts and waits until the callback ran so many times. Then nothing else is noted any more
    /// than what the tick that is under way still runs.
    void RunUntil(const std::string& name, std::size_t count) {
        timeline.Clear();
        manager->Start();
        ASSERT_TRUE(timeline.WaitFor(name, count, kPatience));
    }

    /// What the loop did in the first `ticks` ticks: the callbacks of each, joined by blanks.
    Texts Ticks(std::size_t ticks) const {
        Texts result;
        for (const std::string& text : timeline.Texts()) {
            if (text == kLoopLine) {
                result.emplace_back();
            } else if (!result.empty()) {
                result.back() += (result.back().empty() ? "" : " ") + text;
            }
        }
        result.resize(ticks);
        return result;
    }

    Clock::time_point TimeOf(const std::string& text, std::size_t occurrence = 0) const {
        for (const Happening& happening : timeline.Happenings()) {
            if (happening.text == text && occurrence-- == 0) {
                return happening.time;
            }
        }
        ADD_FAILURE() << text << " did not happen that often";
        return {};
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    const std::shared_ptr<TimerReportMgr> manager = std::make_shared<TimerReportMgr>();
};

TEST_F(TimerLoop, RunsTwelveTwentyFourAndHourlyReportsAtTheirHours) {
    Register("twelve", 12);
    Register("day", 24);
    Register("hour", 1);
    RunUntil("hour", 49);
    Texts expected(49, "hour");
    expected[12 - 1] = expected[36 - 1] = "twelve hour";
    expected[24 - 1] = expected[48 - 1] = "twelve day hour";
    EXPECT_EQ(Ticks(49), expected);
}

TEST_F(TimerLoop, WakesEveryTwelveHoursForTwelveAndTwentyFour) {
    Register("twelve", 12);
    Register("day", 24);
    const Clock::time_point start = Clock::now();
    RunUntil("twelve", 5);
    EXPECT_EQ(Ticks(5), (Texts{"twelve", "twelve day", "twelve", "twelve day", "twelve"}));
    EXPECT_GE(TimeOf("twelve", 0) - start, hours(12));
    EXPECT_LT(TimeOf("twelve", 0) - start, hours(24));
}

TEST_F(TimerLoop, WakesEveryTwoHoursForSixAndFour) {
    Register("six", 6);
    Register("four", 4);
    const Clock::time_point start = Clock::now();
    RunUntil("six", 4);
    EXPECT_EQ(Ticks(12), (Texts{"", "four", "six", "four", "", "six four", "", "four", "six",
                                "four", "", "six four"}));
    EXPECT_GE(TimeOf("four", 0) - start, hours(4));
}

TEST_F(TimerLoop, WritesItsLineOncePerWake) {
    Register("hour", 1);
    RunUntil("hour", 5);
    manager->Stop();
    Texts texts = timeline.Texts();
    ASSERT_GE(texts.size(), 10u);
    texts.resize(10);
    EXPECT_EQ(texts, (Texts{kLoopLine, "hour", kLoopLine, "hour", kLoopLine, "hour", kLoopLine,
                            "hour", kLoopLine, "hour"}));
}

TEST_F(TimerLoop, NeverWaitsLessThanATick) {
    Register("hour", 1);
    RunUntil("hour", 20);
    Clock::time_point previous = TimeOf(kLoopLine);
    for (std::size_t run = 0; run < 20; ++run) {
        const Clock::time_point time = TimeOf("hour", run);
        EXPECT_GE(time - previous, hours(1));
        previous = time;
    }
}

TEST_F(TimerLoop, FirstRunsACallbackOneIntervalAfterStart) {
    Register("three", 3);
    const Clock::time_point start = Clock::now();
    RunUntil("three", 1);
    EXPECT_EQ(Ticks(1), Texts{"three"});
    EXPECT_GE(TimeOf("three") - start, hours(3));
}

TEST_F(TimerLoop, RunsCallbacksInRegistrationOrderOnItsOneThread) {
    Register("second by name", 2);
    Register("first by name", 2);
    Register("third", 1);
    RunUntil("first by name", 3);
    EXPECT_EQ(Ticks(4), (Texts{"third", "second by name first by name third", "third",
                               "second by name first by name third"}));
    std::set<DWORD> threads;
    for (const Happening& happening : timeline.Happenings()) {
        threads.insert(happening.threadId);
    }
    EXPECT_EQ(threads.size(), 1u);
    EXPECT_EQ(threads.count(GetCurrentThreadId()), 0u);
}

TEST_F(TimerLoop, LetsASlowCallbackDelayTheNextTickInsteadOfOverlappingIt) {
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    const auto slow = [&] {
        most = std::max<int>(most, ++running);
        timeline.Note("slow begins");
        Sleep(3 * 3600 * 1000);
        timeline.Note("slow ends");
        --running;
    };
    manager->RegisterReportCallback(slow, 1);
    manager->RegisterReportCallback(slow, 1);
    RunUntil("slow ends", 4);
    EXPECT_EQ(most, 1);
    const Texts perTick(2, "slow begins slow ends slow begins slow ends");
    EXPECT_EQ(Ticks(2), perTick);
    // The wait begins anew after them; elapsed hours count ticks, not the clock.
    EXPECT_GE(TimeOf("slow begins", 2) - TimeOf("slow ends", 1), hours(1));
}

TEST_F(TimerLoop, SkipsAnEmptyCallbackAndRunsTheOthers) {
    manager->RegisterReportCallback({}, 1);
    Register("hour", 1);
    manager->RegisterReportCallback({}, 2);
    RunUntil("hour", 3);
    EXPECT_EQ(Ticks(3), (Texts{"hour", "hour", "hour"}));
}

TEST_F(TimerLoop, NeverRunsWhatWasRegisteredWithAnInvalidInterval) {
    Register("zero", 0);
    Register("negative", -5);
    Register("two", 2);
    RunUntil("two", 2);
    EXPECT_EQ(Ticks(2), (Texts{"two", "two"}));
    EXPECT_EQ(timeline.Count("zero") + timeline.Count("negative"), 0u);
}

TEST_F(TimerLoop, RunsNothingAndBeginsAFullTickAfterASpuriousWake) {
    Register("twelve", 12);
    Register("day", 24);
    timeline.Clear();
    manager->Start();
    ASSERT_TRUE(timeline.WaitFor(kLoopLine, 1, kPatience));
    Sleep(3 * 3600 * 1000);
    const Clock::time_point wake = Clock::now();
    test_support::WakeSpuriously(*manager);
    ASSERT_TRUE(timeline.WaitFor("day", 1, kPatience));
    // The wake counts for nothing: neither as a tick, nor do the hours before it.
    EXPECT_EQ(Ticks(3), (Texts{"", "twelve", "twelve day"}));
    EXPECT_GE(TimeOf("twelve") - wake, hours(12));
}

TEST_F(TimerLoop, RunsNothingWhenStoppedWhileItWaits) {
    Register("day", 24);
    timeline.Clear();
    manager->Start();
    ASSERT_TRUE(timeline.WaitFor(kLoopLine, 1, kPatience));
    Sleep(2 * 3600 * 1000);
    const Clock::time_point stop = Clock::now();
    manager->Stop();
    EXPECT_LT(Clock::now() - stop, hours(12));
    EXPECT_EQ(timeline.Texts(), Texts{kLoopLine});
}

TEST_F(TimerLoop, SeesAStopBeforeItsWaitOnlyAfterThatWaitAndRunsWhatIsDueOnceMore) {
    Register("hour", 1);
    timeline.Clear();
    // The loop writes its line between its test and its wait; Stop comes to its join meanwhile.
    log.onLine = [this](const test_support::LogLine&) {
        while (test_support::IsRunning(*manager)) {
            Sleep(60 * 1000);
        }
        timeline.Note("stopping");
        Sleep(3 * 3600 * 1000);
    };
    manager->Start();
    ASSERT_TRUE(timeline.WaitFor(kLoopLine, 1, kPatience));
    manager->Stop();
    EXPECT_EQ(timeline.Texts(), (Texts{kLoopLine, "stopping", "hour"}));
}

// --- What ends the process ---

class EndOfTheProcess : public testing::Test {
protected:
    static test_support::ChildResult RunScenario(const wchar_t* scenario) {
        return test_support::RunChild(test_support::ProgramFolder() + L"\\timer_probe.exe",
                                      {scenario}, kPatience);
    }
};

TEST_F(EndOfTheProcess, IsAStopFromACallbackWithTheResourceDeadlockError) {
    const test_support::ChildResult result = RunScenario(L"stop-from-callback");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("resource deadlock"));
    EXPECT_THAT(result.output, Not(HasSubstr("survived")));
    EXPECT_EQ(result.exitCode, 71u);
}

TEST_F(EndOfTheProcess, IsAnExceptionThatLeavesACallback) {
    const test_support::ChildResult result = RunScenario(L"throw-from-callback");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("exception: from the callback"));
    EXPECT_EQ(result.exitCode, 72u);
}

TEST_F(EndOfTheProcess, IsASecondStartWhileTheLoopRuns) {
    const test_support::ChildResult result = RunScenario(L"second-start");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("no exception"));
    EXPECT_THAT(result.output, Not(HasSubstr("survived")));
    EXPECT_EQ(result.exitCode, 73u);
}

}  // namespace
