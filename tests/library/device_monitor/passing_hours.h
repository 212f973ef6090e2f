// Hours that pass when a test says so.
#pragma once

#include <windows.h>

#include <chrono>

#include "simulation/import_redirection.h"
#include "simulation/simulated_machine.h"

namespace device_monitor_test {

/// Holds the timer loop of a loaded plug-in in its wait until the test lets the wait time out, and
/// moves the clocks that the loop reads. Made before the plug-in is started and within the life of
/// the simulated machine. One at a time in a process.
class PassingHours {
public:
    PassingHours(HMODULE module, simulation::World& world);

    /// Waits until the loop waits. False when it never does.
    bool LoopWaits() const;
    /// Advances the clocks, by an hour unless told otherwise, ends the wait and returns when the
    /// loop waits again, so all callbacks of the tick have run.
    bool PassTick(std::chrono::milliseconds onTheWallClock = std::chrono::hours(1),
                  std::chrono::milliseconds onTheSteadyClock = std::chrono::hours(1));
    /// The same, but returns at once.
    void EndWait(std::chrono::milliseconds onTheWallClock,
                 std::chrono::milliseconds onTheSteadyClock);
    /// The loop goes on waiting.
    void MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds steady);
    /// Whether this thread of the plug-in's was the last to wait without limit, as for a thread.
    bool WaitsWithoutLimit(DWORD thread) const;

private:
    simulation::World& world;
    simulation::ImportRedirection redirection;
};

}  // namespace device_monitor_test
