// Whole days of the timer loop.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <set>
#include <thread>

#include "accelerated/running_loop.h"

namespace {

using namespace timer_loop_test;

class TimerLoop : public RunningLoop {};

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
    manager.Stop();
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
    manager.RegisterReportCallback(slow, 1);
    manager.RegisterReportCallback(slow, 1);
    RunUntil("slow ends", 4);
    manager.Stop();
    EXPECT_EQ(most, 1);
    const Texts perTick(2, "slow begins slow ends slow begins slow ends");
    EXPECT_EQ(Ticks(2), perTick);
    // The wait begins anew after them; elapsed hours count ticks, not the clock.
    EXPECT_GE(TimeOf("slow begins", 2) - TimeOf("slow ends", 1), hours(1));
}

TEST_F(TimerLoop, SkipsAnEmptyCallbackAndRunsTheOthers) {
    manager.RegisterReportCallback({}, 1);
    Register("hour", 1);
    manager.RegisterReportCallback({}, 2);
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
    manager.Start();
    ASSERT_TRUE(timeline.WaitFor(kLoopLine, 1, kPatience));
    Sleep(3 * 3600 * 1000);
    const Clock::time_point wake = Clock::now();
    test_support::WakeSpuriously(manager);
    ASSERT_TRUE(timeline.WaitFor("day", 1, kPatience));
    // The wake counts for nothing: neither as a tick, nor do the hours before it.
    EXPECT_EQ(Ticks(3), (Texts{"", "twelve", "twelve day"}));
    EXPECT_GE(TimeOf("twelve") - wake, hours(12));
}

TEST_F(TimerLoop, HoldsItsLockWhileCallbacksRun) {
    std::atomic<int> timesFree{0};
    const auto tryLock = [&] {
        std::thread([&] { timesFree += test_support::IsWaitLockFree(manager) ? 1 : 0; }).join();
        timeline.Note("tried");
    };
    manager.RegisterReportCallback(tryLock, 1);
    manager.RegisterReportCallback(tryLock, 1);
    RunUntil("tried", 4);
    manager.Stop();
    EXPECT_EQ(timesFree, 0);
    EXPECT_TRUE(test_support::IsWaitLockFree(manager));
}

}  // namespace
