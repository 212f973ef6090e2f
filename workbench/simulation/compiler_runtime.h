// What the compilers' runtimes import for clocks and formatting. The names of both runtimes are
// known to every build: a redirection takes what the module imports.
#pragma once

namespace simulation::runtime {

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

}  // namespace simulation::runtime
