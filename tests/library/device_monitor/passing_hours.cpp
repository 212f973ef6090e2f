#include "library/device_monitor/passing_hours.h"

#include <atomic>
#include <chrono>

#include "support/comes_true.h"
#include "support/runtime_waits.h"

namespace device_monitor_test {
namespace {

using namespace std::chrono_literals;

// Nothing but the timer loop waits that long.
constexpr DWORD kLongWait = 30 * 60 * 1000;
constexpr DWORD kSlice = 1;

std::atomic<std::size_t> longWaits{0};
std::atomic<bool> tickIsDue{false};
std::atomic<DWORD> latestEndlessWaiter{0};

/// Waits in slices, so that the wait can be ended from outside.
DWORD WaitForTick(DWORD milliseconds, const test_support::Wait& wait) {
    if (milliseconds == INFINITE) {
        latestEndlessWaiter = GetCurrentThreadId();
    }
    if (milliseconds < kLongWait || milliseconds == INFINITE) {
        return wait(milliseconds);
    }
    ++longWaits;
    for (;;) {
        const DWORD result = wait(kSlice);
        if (result != WAIT_TIMEOUT || tickIsDue.exchange(false)) {
            return result;
        }
    }
}

bool LoopWaitsFor(std::size_t count) {
    return test_support::ComesTrue([count] { return longWaits >= count; });
}

}  // namespace

PassingHours::PassingHours(HMODULE module, simulation::World& worldOfTest)
    : world(worldOfTest), redirection(module) {
    longWaits = 0;
    tickIsDue = false;
    latestEndlessWaiter = 0;
    test_support::RedirectWaits(redirection, &WaitForTick);
    test_support::RedirectClocks(redirection);
}

bool PassingHours::LoopWaits() const { return LoopWaitsFor(1); }

bool PassingHours::PassTick(std::chrono::milliseconds onTheWallClock,
                            std::chrono::milliseconds onTheSteadyClock) {
    if (!LoopWaits()) {
        return false;
    }
    const std::size_t before = longWaits;
    EndWait(onTheWallClock, onTheSteadyClock);
    return LoopWaitsFor(before + 1);
}

void PassingHours::EndWait(std::chrono::milliseconds onTheWallClock,
                           std::chrono::milliseconds onTheSteadyClock) {
    MoveClocks(onTheWallClock, onTheSteadyClock);
    test_support::MoveClocks(0h, 1h);
    tickIsDue = true;
}

void PassingHours::MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds steady) {
    test_support::MoveClocks(wall, 0h);
    world.clock.Advance(steady);
}

bool PassingHours::WaitsWithoutLimit(DWORD thread) const { return latestEndlessWaiter == thread; }

}  // namespace device_monitor_test
