// Stop while the loop waits, right before that, and while it runs callbacks.
#include <windows.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <utility>

#include "accelerated/running_loop.h"
#include "simulation/import_redirection.h"

namespace {

using namespace timer_loop_test;

class TimerLoopStop : public RunningLoop {
protected:
    /// For the loop's thread: waits until Stop has begun on another.
    bool StopComes() const {
        const Clock::time_point limit = Clock::now() + kPatience;
        while (test_support::IsRunning(manager) && Clock::now() < limit) {
            Sleep(60 * 1000);
        }
        return !test_support::IsRunning(manager);
    }

    /// For the loop's thread, between its test and its wait: Stop comes to its join meanwhile.
    void LetStopCome() {
        EXPECT_TRUE(StopComes());
        timeline.Note("stopping");
        Sleep(3 * 3600 * 1000);
    }

    /// Starts, and stops as soon as the loop runs.
    void ExpectThatWhatIsDueRunsOnceMore() {
        manager.Start();
        ASSERT_TRUE(timeline.WaitFor(kLoopLine, 1, kPatience));
        manager.Stop();
        EXPECT_EQ(timeline.Texts(), (Texts{kLoopLine, "stopping", "hour"}));
    }
};

TEST_F(TimerLoopStop, EndsAWaitAndRunsNothing) {
    Register("forty days", 40 * 24);
    const test_support::LoopWaitProbe probe(GetModuleHandleW(nullptr));
    timeline.Clear();
    manager.Start();
    ASSERT_TRUE(probe.LoopWaits(1, kPatience));
    Sleep(2 * 3600 * 1000);
    manager.Stop();
    // A wait that goes on to its end runs what is due then.
    EXPECT_EQ(timeline.Texts(), Texts{kLoopLine});
}

TEST_F(TimerLoopStop, BeforeTheWaitIsSeenAfterItAndWhatIsDueRunsOnceMore) {
    Register("hour", 1);
    timeline.Clear();
    // The loop writes its line between the two.
    log.onLine = [this](const test_support::LogLine&) { LetStopCome(); };
    ExpectThatWhatIsDueRunsOnceMore();
}

decltype(::QueryPerformanceCounter)* realQueryPerformanceCounter = nullptr;
std::function<void()> onClockOfTheLoop;

/// The steady clock, which the loop asks between looking for a Stop and waiting.
BOOL WINAPI WatchedQueryPerformanceCounter(LARGE_INTEGER* counter) {
    static const DWORD testThread = GetCurrentThreadId();
    if (GetCurrentThreadId() != testThread && onClockOfTheLoop) {
        std::exchange(onClockOfTheLoop, nullptr)();
    }
    return realQueryPerformanceCounter(counter);
}

TEST_F(TimerLoopStop, RightBeforeTheWaitIsSeenAfterItAndWhatIsDueRunsOnceMore) {
    simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    realQueryPerformanceCounter = imports.Redirect<decltype(::QueryPerformanceCounter)>(
        "QueryPerformanceCounter", WatchedQueryPerformanceCounter);
    static_cast<void>(std::chrono::steady_clock::now());  // Tells it which thread is the test's.
    Register("hour", 1);
    timeline.Clear();
    onClockOfTheLoop = [this] { LetStopCome(); };
    ExpectThatWhatIsDueRunsOnceMore();
}

TEST_F(TimerLoopStop, DuringACallbackTakesEffectAtOnceAndLetsTheTickFinish) {
    std::atomic<bool> stopCame{false};
    const auto waiting = [&] {
        timeline.Note("begins");
        stopCame = StopComes();
        timeline.Note("ends");
    };
    manager.RegisterReportCallback(waiting, 1);
    Register("the other", 1);
    RunUntil("begins", 1);
    manager.Stop();
    EXPECT_TRUE(stopCame);
    EXPECT_EQ(timeline.Texts(), (Texts{kLoopLine, "begins", "ends", "the other"}));
}

}  // namespace
