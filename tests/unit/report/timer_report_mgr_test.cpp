// What the timer manager does without an hour having to pass. Whole hours are in the accelerated
// tests.
#include "report/timer_report_mgr.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/grouping_locale.h"
#include "support/loop_wait_probe.h"
#include "support/recorded_log.h"
#include "support/timer_internals.h"

namespace {

using std::chrono::milliseconds;
using test_support::HasLoopThread;
using test_support::TickHoursOf;

constexpr char kLoopLine[] =
    "log 3 BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";
constexpr char kInvalidLine[] =
    "log 3 Register timer invalid(TimerReportMgr::RegisterReportCallback)";

std::string RegisterLine(int hours) {
    return "log 3 Register timer:" + std::to_string(hours) +
           "(TimerReportMgr::RegisterReportCallback)";
}

class TimerManager : public testing::Test {
protected:
    /// Back when the loop waits, so that a Stop is noticed at once.
    void StartAndReachTheWait() {
        manager.Start();
        ASSERT_TRUE(probe.LoopWaits());
    }

    std::int32_t TickAfter(const std::vector<std::int32_t>& intervals) {
        TimerReportMgr fresh;
        for (const std::int32_t hours : intervals) {
            fresh.RegisterReportCallback([] {}, hours);
        }
        return TickHoursOf(fresh);
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    const test_support::LoopWaitProbe probe{GetModuleHandleW(nullptr)};
    TimerReportMgr manager;
};

TEST_F(TimerManager, LogsEachRegistrationWithItsInterval) {
    manager.RegisterReportCallback([] {}, 12);
    manager.RegisterReportCallback([] {}, 24);
    EXPECT_EQ(timeline.Texts(), (std::vector<std::string>{RegisterLine(12), RegisterLine(24)}));
}

TEST_F(TimerManager, LogsIntervalsWithoutGroupingWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    manager.RegisterReportCallback([] {}, 1234567);
    EXPECT_EQ(timeline.Texts(), std::vector<std::string>{RegisterLine(1234567)});
}

TEST_F(TimerManager, RefusesAnIntervalOfZeroWithBothLines) {
    manager.RegisterReportCallback([] {}, 0);
    EXPECT_EQ(timeline.Texts(), (std::vector<std::string>{RegisterLine(0), kInvalidLine}));
}

TEST_F(TimerManager, RefusesANegativeIntervalWithBothLines) {
    manager.RegisterReportCallback([] {}, -5);
    EXPECT_EQ(timeline.Texts(), (std::vector<std::string>{RegisterLine(-5), kInvalidLine}));
}

TEST_F(TimerManager, StoresNothingOfAnInvalidRegistration) {
    const auto marker = std::make_shared<int>(0);
    manager.RegisterReportCallback([marker] {}, 0);
    manager.RegisterReportCallback([marker] {}, -5);
    EXPECT_EQ(marker.use_count(), 1);
    EXPECT_EQ(TickHoursOf(manager), 1);
    manager.Start();
    EXPECT_FALSE(HasLoopThread(manager));
}

TEST_F(TimerManager, KeepsTheTickWhenARegistrationIsInvalid) {
    manager.RegisterReportCallback([] {}, 12);
    manager.RegisterReportCallback([] {}, 0);
    manager.RegisterReportCallback([] {}, -5);
    EXPECT_EQ(TickHoursOf(manager), 12);
}

TEST_F(TimerManager, KeepsACopyOfTheCallback) {
    const auto marker = std::make_shared<int>(0);
    const TimerReportMgr::Callback callback = [marker] {};
    manager.RegisterReportCallback(callback, 1);
    EXPECT_EQ(marker.use_count(), 3);
}

TEST_F(TimerManager, TicksOnceAnHourBeforeAnythingIsRegistered) {
    EXPECT_EQ(TickHoursOf(manager), 1);
}

TEST_F(TimerManager, RecomputesTheTickAfterEachRegistration) {
    manager.RegisterReportCallback([] {}, 24);
    EXPECT_EQ(TickHoursOf(manager), 24);
    manager.RegisterReportCallback([] {}, 36);
    EXPECT_EQ(TickHoursOf(manager), 12);
    manager.RegisterReportCallback([] {}, 8);
    EXPECT_EQ(TickHoursOf(manager), 4);
    manager.RegisterReportCallback([] {}, 1);
    EXPECT_EQ(TickHoursOf(manager), 1);
}

TEST_F(TimerManager, TicksAtTheGreatestCommonDivisorOfAllIntervals) {
    EXPECT_EQ(TickAfter({12, 24, 1}), 1);
    EXPECT_EQ(TickAfter({12, 24}), 12);
    EXPECT_EQ(TickAfter({24, 12}), 12);
    EXPECT_EQ(TickAfter({6, 4}), 2);
    EXPECT_EQ(TickAfter({7, 5}), 1);
    EXPECT_EQ(TickAfter({6, 10, 15}), 1);
    EXPECT_EQ(TickAfter({5}), 5);
    EXPECT_EQ(TickAfter({9, 9}), 9);
}

TEST_F(TimerManager, CountsAnEmptyCallbackForTheTick) {
    manager.RegisterReportCallback([] {}, 6);
    manager.RegisterReportCallback({}, 4);
    EXPECT_EQ(TickHoursOf(manager), 2);
}

TEST_F(TimerManager, StartsNoThreadWhenNothingIsRegistered) {
    manager.Start();
    EXPECT_FALSE(HasLoopThread(manager));
    manager.Stop();
    EXPECT_TRUE(timeline.Texts().empty());
}

TEST_F(TimerManager, WritesTheLoopLineOnAThreadOfItsOwn) {
    manager.RegisterReportCallback([] {}, 1);
    timeline.Clear();
    StartAndReachTheWait();
    ASSERT_EQ(timeline.Texts(), std::vector<std::string>{kLoopLine});
    EXPECT_NE(timeline.Happenings().front().threadId, GetCurrentThreadId());
}

TEST_F(TimerManager, StopsAtOnceWhileTheLoopWaitsAndRunsNothing) {
    int runs = 0;
    manager.RegisterReportCallback([&] { ++runs; }, 1);
    StartAndReachTheWait();
    const ULONGLONG before = GetTickCount64();
    manager.Stop();
    EXPECT_LT(GetTickCount64() - before, 10'000u);
    EXPECT_FALSE(HasLoopThread(manager));
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(timeline.Count(kLoopLine), 1u);
}

TEST_F(TimerManager, RunsNothingAndWritesTheLoopLineAgainAfterASpuriousWake) {
    int runs = 0;
    manager.RegisterReportCallback([&] { ++runs; }, 1);
    StartAndReachTheWait();
    test_support::WakeSpuriously(manager);
    ASSERT_TRUE(probe.LoopWaits(2));
    EXPECT_EQ(timeline.Count(kLoopLine), 2u);
    manager.Stop();
    EXPECT_EQ(runs, 0);
}

TEST_F(TimerManager, MayBeStoppedTwiceAndWithoutStart) {
    manager.Stop();
    manager.RegisterReportCallback([] {}, 1);
    manager.Stop();
    manager.Stop();
    EXPECT_FALSE(HasLoopThread(manager));
}

TEST_F(TimerManager, StartsAThreadThatEndsAtOnceAfterAStop) {
    manager.RegisterReportCallback([] {}, 1);
    manager.Stop();
    manager.Start();
    EXPECT_TRUE(HasLoopThread(manager));
    EXPECT_FALSE(timeline.WaitFor(kLoopLine, 1, milliseconds(200)));
    manager.Stop();
}

TEST_F(TimerManager, StopsAndReleasesItsCallbacksWhenItIsDestroyed) {
    const auto marker = std::make_shared<int>(0);
    {
        TimerReportMgr running;
        running.RegisterReportCallback([marker] {}, 1);
        running.Start();
        ASSERT_TRUE(probe.LoopWaits());
    }
    EXPECT_EQ(marker.use_count(), 1);
}

TEST(TimerManagerInstance, IsTheSameForEverybody) {
    EXPECT_EQ(&TimerReportMgr::GetInstance(), &TimerReportMgr::GetInstance());
}

}  // namespace
