// What the timer manager does without an hour having to pass. Whole hours are in the accelerated
// tests.
#include "report/timer_report_mgr.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/comes_true.h"
#include "support/grouping_locale.h"
#include "support/loop_wait_probe.h"
#include "support/recorded_log.h"
#include "support/timer_internals.h"

namespace {

using test_support::HasLoopThread;
using test_support::TickHoursOf;
using Texts = std::vector<std::string>;

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

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    const test_support::LoopWaitProbe probe{GetModuleHandleW(nullptr)};
    TimerReportMgr manager;
};

TEST_F(TimerManager, KeepsEachCallbackWhoseIntervalIsAtLeastAnHour) {
    const test_support::GroupingLocale grouping;
    for (const std::int32_t hours : {1, 1234567}) {
        const auto marker = std::make_shared<int>(0);
        timeline.Clear();
        manager.RegisterReportCallback([marker] {}, hours);
        EXPECT_EQ(timeline.Texts(), Texts{RegisterLine(hours)});
        EXPECT_EQ(marker.use_count(), 2);
    }
    for (const std::int32_t hours : {0, -5}) {
        const auto marker = std::make_shared<int>(0);
        timeline.Clear();
        manager.RegisterReportCallback([marker] {}, hours);
        EXPECT_EQ(timeline.Texts(), (Texts{RegisterLine(hours), kInvalidLine}));
        EXPECT_EQ(marker.use_count(), 1);
    }
}

TEST_F(TimerManager, TicksAtTheGreatestCommonDivisorOfTheValidIntervalsSoFar) {
    using Intervals = std::vector<std::int32_t>;
    for (const auto& [intervals, tick] :
         {std::pair(Intervals{}, 1), std::pair(Intervals{24}, 24), std::pair(Intervals{24, 36}, 12),
          std::pair(Intervals{24, 36, 8}, 4), std::pair(Intervals{24, 36, 8, 1}, 1),
          std::pair(Intervals{12, 24}, 12), std::pair(Intervals{12, 24, 1}, 1),
          std::pair(Intervals{6, 4}, 2), std::pair(Intervals{7, 5}, 1),
          std::pair(Intervals{6, 10, 15}, 1), std::pair(Intervals{5}, 5),
          std::pair(Intervals{9, 9}, 9), std::pair(Intervals{12, 0, -5}, 12)}) {
        TimerReportMgr fresh;
        for (const std::int32_t hours : intervals) {
            fresh.RegisterReportCallback([] {}, hours);
        }
        EXPECT_EQ(TickHoursOf(fresh), tick);
        // An empty callback counts as well.
        fresh.RegisterReportCallback({}, 2 * tick + 1);
        EXPECT_EQ(TickHoursOf(fresh), intervals.empty() ? 3 : 1);
    }
}

TEST_F(TimerManager, StartsNoThreadWhenNothingIsRegistered) {
    manager.RegisterReportCallback([] {}, 0);
    timeline.Clear();
    manager.Start();
    EXPECT_FALSE(HasLoopThread(manager));
    manager.Stop();
    EXPECT_EQ(timeline.Texts(), Texts{});
}

TEST_F(TimerManager, WritesTheLoopLineOnAThreadOfItsOwnAndStopsAtOnceWhileTheLoopWaits) {
    int runs = 0;
    manager.RegisterReportCallback([&] { ++runs; }, 1);
    timeline.Clear();
    StartAndReachTheWait();
    ASSERT_EQ(timeline.Texts(), Texts{kLoopLine});
    EXPECT_NE(timeline.Happenings().front().threadId, GetCurrentThreadId());
    const ULONGLONG before = GetTickCount64();
    manager.Stop();
    EXPECT_LT(GetTickCount64() - before, static_cast<ULONGLONG>(test_support::kPatience.count()));
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

TEST_F(TimerManager, StartsAThreadThatEndsAtOnceAfterAStop) {
    manager.RegisterReportCallback([] {}, 1);
    manager.Stop();
    manager.Start();
    EXPECT_TRUE(HasLoopThread(manager));
    manager.Stop();
    EXPECT_EQ(timeline.Count(kLoopLine), 0u);
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
