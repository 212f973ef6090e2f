// The monitor's thread, run by a test.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "device_reporter/report_device_info.h"
#include "simulation/simulated_machine.h"

namespace device_monitor_test {

/// Runs the body of the monitor thread until its window is closed. Failures of the body show as a
/// thread that ends by itself.
class RunningMonitor {
public:
    RunningMonitor(simulation::World& world, DeviceReporter::ReportDeviceInfo& reporter);
    ~RunningMonitor();
    RunningMonitor(const RunningMonitor&) = delete;
    RunningMonitor& operator=(const RunningMonitor&) = delete;

    /// Waits until the thread waits for messages; false when it does not get there.
    bool WaitsForMessages();
    /// Waits until the thread has ended by itself.
    bool Ends() const;
    DWORD ThreadId() const { return threadId; }
    /// What the body returned; only after its end.
    DWORD Status() const { return status; }

    /// Sends a message and waits until the window has dealt with it.
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    /// Closes the window and waits for the thread's end.
    void Close();

private:
    simulation::World& world;
    DeviceReporter::ReportDeviceInfo& reporter;
    bool reachedLoop = false;
    std::atomic<DWORD> threadId{0};
    std::atomic<bool> ended{false};
    DWORD status = 0xFFFFFFFF;
    std::thread thread;
};

}  // namespace device_monitor_test
