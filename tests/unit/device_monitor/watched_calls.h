// Calls of the monitor's thread that the simulated machine's journal does not show.
#pragma once

#include <windows.h>

#include <vector>

#include "simulation/import_redirection.h"

namespace device_monitor_test {

/// While it lives, these calls of the test program are noted on their way to the system. One at a
/// time in a process; made before a simulated machine and outliving it.
class WatchedCalls {
public:
    WatchedCalls();
    ~WatchedCalls();
    WatchedCalls(const WatchedCalls&) = delete;
    WatchedCalls& operator=(const WatchedCalls&) = delete;

    std::vector<MSG> translated;
    std::vector<MSG> dispatched;
    /// The bytes of each notification filter, as many as it says.
    std::vector<std::vector<BYTE>> filters;

private:
    simulation::ImportRedirection redirection;
};

}  // namespace device_monitor_test
