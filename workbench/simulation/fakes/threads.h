// The threads that the simulated module made.
#pragma once

#include <chrono>

#include "simulation/simulated_machine.h"

namespace simulation {

/// Waits until every thread that the module made by CreateThread has ended, which it may have to
/// before the simulation does. False when one still runs after `patience`.
bool WaitForThreads(World& world, std::chrono::milliseconds patience);

}  // namespace simulation
