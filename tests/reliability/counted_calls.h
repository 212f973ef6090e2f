// How far a module has come, in calls that it makes of others.
#pragma once

#include <windows.h>

#include <cstdint>

namespace reliability_test {

/// From here on counts every call that the module makes through its import table, whatever it
/// calls, the simulation's fakes included. Before the module works; once in a process; on x86-64.
void CountCalls(HMODULE module);

/// Takes no lock.
std::uint64_t CallsSoFar();

}  // namespace reliability_test
