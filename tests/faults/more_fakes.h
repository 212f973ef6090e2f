// Calls that no other test makes fail: code pages, the bounded formatter, the C runtime's threads,
// the firmware monitor's stop.
#pragma once

#include <windows.h>

#include <optional>

#include "simulation/import_redirection.h"

namespace faults_test {

/// Installed behind all other fakes.
void InstallMoreFakes(simulation::ImportRedirection& redirection);

/// While it lives, a thread that the plug-in makes by CreateThread waits before its first step, so
/// that the calls of a scenario come in one order. One at a time in a process.
class HeldMonitorThread {
public:
    HeldMonitorThread();
    /// Lets it go.
    ~HeldMonitorThread();
    HeldMonitorThread(const HeldMonitorThread&) = delete;
    HeldMonitorThread& operator=(const HeldMonitorThread&) = delete;

    static void LetGo();
    /// Of the thread that was held last; 0 when there was none.
    static DWORD ThreadId();
};

}  // namespace faults_test
