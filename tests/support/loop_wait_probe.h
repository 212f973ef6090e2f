// Knowing that the timer loop has reached its wait.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>

#include "simulation/import_redirection.h"
#include "support/comes_true.h"

namespace test_support {

/// Watches a module's waits of half an hour and more: those of the timer loop. A Stop before the
/// loop waits is only noticed after a whole tick, so tests on the real clock have to be sure.
/// One at a time in a process.
class LoopWaitProbe {
public:
    explicit LoopWaitProbe(HMODULE module);

    /// Waits until the loop began to wait for the `count`th time since the probe was made. False
    /// when that did not come about within `limit`.
    bool LoopWaits(std::size_t count = 1, std::chrono::milliseconds limit = kPatience) const;

    /// For how long the loop's latest wait is meant to last at most.
    std::chrono::milliseconds LatestWait() const;

private:
    simulation::ImportRedirection redirection;
};

}  // namespace test_support
