// What the compilers' runtimes import for clocks, waits, memory and formatting. Whoever redirects
// or lists such imports asks here. The names of both runtimes are known to every build: a
// redirection takes what the module imports.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>

#include "simulation/import_redirection.h"

namespace simulation::runtime {

/// Whether a library, named as import tables do, is the compiler's: it comes with the system or
/// with the host.
bool IsLibrary(const std::string& name);

/// g++'s runtime, which is a part of the plug-in, keeps some memory in each life, and says which
/// exception nobody caught. Microsoft's does neither.
#if defined(_MSC_VER)
inline constexpr bool kIsMicrosofts = true;
#else
inline constexpr bool kIsMicrosofts = false;
#endif

/// std::chrono::steady_clock; mingw-w64's asks QueryPerformanceCounter.
inline constexpr char kSteadyCounter[] = "_Query_perf_counter";
using CounterFunction = long long __cdecl();

/// swprintf_s; mingw-w64's is imported by that name.
inline constexpr char kBoundedFormat[] = "__stdio_common_vswprintf_s";

/// Waits at most so long; WAIT_TIMEOUT when nothing ended the wait.
using Wait = std::function<DWORD(DWORD milliseconds)>;
using WaitHandler = DWORD(DWORD milliseconds, const Wait& wait);

/// Sends every wait of the module, for an object, a thread or a condition variable, to `handler`,
/// on the thread that waits. Threads may be inside when the redirection goes. The clocks are not
/// moved yet. One at a time in a process.
void RedirectWaits(ImportRedirection& redirection, WaitHandler* handler);

/// Lets MoveClocks move std::chrono::system_clock and the clock that tells mingw-w64's thread
/// library that a wait is over. Called after RedirectWaits.
void RedirectClocks(ImportRedirection& redirection);
void MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds waiting);

}  // namespace simulation::runtime
