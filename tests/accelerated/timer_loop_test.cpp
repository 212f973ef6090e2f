// Whole days of the timer loop.
#include <windows.h>
#include <gtest/gtest.h>

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
    const test_support::LoopWaitProbe probe(GetModuleHandleW(nullptr));
    timeline.Clear();
    const Clock::time_point start = Clock::now();
    manager.Start();
    ASSERT_TRUE(probe.LoopWaits(1, kPatience));
    EXPECT_LE(probe.LatestWait(), hours(12));
    ASSERT_TRUE(timeline.WaitFor("twelve", 5, kPatience));
    EXPECT_EQ(Ticks(5), (Texts{"twelve", "twelve day", "twelve", "twelve day", "twelve"}));
    EXPECT_GE(TimeOf("twelve", 0) - start, hours(12));
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

TEST_F(TimerLoop, SkipsEmptyCallbacksAndInvalidIntervalsAndRunsTheOthers) {
    manager.RegisterReportCallback({}, 2);
    Register("zero", 0);
    Register("negative", -5);
    Register("two", 2);
    manager.RegisterReportCallback({}, 4);
    RunUntil("two", 2);
    EXPECT_EQ(Ticks(2), (Texts{"two", "two"}));
}

TEST_F(TimerLoop, RunsNothingAndBeginsAFullTickAfterASpuriousWake) {
    // So long a tick that the wake falls into the first one however late it comes.
    Register("two days", 48);
    Register("four days", 96);
    const test_support::LoopWaitProbe probe(GetModuleHandleW(nullptr));
    timeline.Clear();
    manager.Start();
    ASSERT_TRUE(probe.LoopWaits(1, kPatience));
    Sleep(3 * 3600 * 1000);
    const Clock::time_point wake = Clock::now();
    test_support::WakeSpuriously(manager);
    ASSERT_TRUE(timeline.WaitFor("two days", 1, kPatience));
    // The wake counts for nothing: neither as a tick, nor do the hours before it.
    EXPECT_EQ(Ticks(2), (Texts{"", "two days"}));
    EXPECT_GE(TimeOf("two days") - wake, hours(48));
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
