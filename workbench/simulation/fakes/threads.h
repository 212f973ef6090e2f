// Threads: the real system makes them, the journal, the fault plan and the ledger see it:
// CreateThread.
#pragma once

#include <chrono>

#include "simulation/import_redirection.h"
#include "simulation/simulated_machine.h"

namespace simulation {

void InstallThreadFakes(ImportRedirection& redirection);

/// Waits until every thread that the module made by CreateThread has ended, which it may have to
/// before the simulation does. False when one still runs after `patience`.
bool WaitForThreads(World& world, std::chrono::milliseconds patience);

}  // namespace simulation
