// Redirects what the compilers' runtimes import for waits and for the clocks that end them.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>

#include "simulation/import_redirection.h"

namespace test_support {

/// Whether a library, named as import tables do, is the compiler's: it comes with the system or
/// with the host.
bool IsRuntimeLibrary(const std::string& name);

/// Waits at most so long; WAIT_TIMEOUT when nothing ended the wait.
using Wait = std::function<DWORD(DWORD milliseconds)>;
using WaitHandler = DWORD(DWORD milliseconds, const Wait& wait);

/// Sends every wait of the module, for an object, a thread or a condition variable, to `handler`,
/// on the thread that waits. Threads may be inside when the redirection goes. The clocks are not
/// moved yet. One at a time in a process.
void RedirectWaits(simulation::ImportRedirection& redirection, WaitHandler* handler);

/// Lets MoveClocks move std::chrono::system_clock and the clock that tells mingw-w64's thread
/// library that a wait is over. Called after RedirectWaits.
void RedirectClocks(simulation::ImportRedirection& redirection);
void MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds waiting);

}  // namespace test_support
