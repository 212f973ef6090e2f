// The clocks, answered from the simulated clock where it was set and by the real system elsewhere:
// _time64, GetSystemTimeAsFileTime, QueryPerformanceCounter. std::chrono::steady_clock follows;
// std::chrono::system_clock does not with the GNU runtime, which fetches a more precise function
// when the module is loaded and never asks its import table again.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallTimeFakes(ImportRedirection& redirection);

}  // namespace simulation
