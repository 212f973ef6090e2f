// The device inventory reporter.
#pragma once

#include <windows.h>
#include <dbt.h>

#include <atomic>
#include <cstdint>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// No more device lists than these are sent per installation.
inline constexpr std::int32_t kMaxReportCount = 10;

/// Private message of the monitor's window: asks it to send the device list if it is due. Carries
/// nothing.
inline constexpr UINT WM_REPORT_DEVICES = WM_USER + 1001;

/// Keeps a map of the machine's devices current and sends it as a list, at most once a day and at
/// most ten times per installation.
///
/// All device work happens on the monitor thread, which owns a message-only window. Other threads
/// only post to that window: ReportDevices from the timer loop, StopMonitorDevices from the host.
class ReportDeviceInfo {
public:
    /// The process-wide reporter, constructed when the library is loaded.
    static ReportDeviceInfo& GetInstance();

    ReportDeviceInfo() = default;
    ReportDeviceInfo(const ReportDeviceInfo&) = delete;
    ReportDeviceInfo& operator=(const ReportDeviceInfo&) = delete;

    /// Asks the suite whether this machine reports devices and loads the persisted count. The
    /// 24 hours before the first list begin here. Called once, before the monitor thread exists.
    /// False, with a log line, when the machine does not report. A count that cannot be read is
    /// logged and taken as 0.
    static bool Init();

    /// Creates the monitor thread, which is never joined; failure is logged. The reporter has to
    /// outlive it, as the process-wide one does: the thread keeps the library mapped.
    void StartMonitorDevices();

    /// Asks the monitor's window, by a posted message, for the list if it is due. Without a window
    /// that is logged. Callable from any thread.
    void ReportDevices();

    /// Asks the monitor's window, by a posted message, to close. Without a window that is logged,
    /// and the monitor goes on. Callable from any thread.
    void StopMonitorDevices();

    /// Body of the monitor thread; `param` is the reporter. Fills the device map, then handles the
    /// window's messages until it is closed. Always 0.
    static DWORD WINAPI MonitorThreadProc(void* param);

    /// Sends the list when it is due and the user has agreed. After the last allowed list it closes
    /// the window. Monitor thread only.
    void DoReportDevices();

    DeviceMap devices;                     ///< Monitor thread only.
    std::atomic<HWND> msgWindow{nullptr};  ///< Set once by the monitor thread; stale after it.
    HDEVNOTIFY devNotify = nullptr;  ///< Monitor thread only; owned until the window is closed.
    /// Lists sent so far. Counts as exhausted until Init has loaded the persisted count. Like the
    /// time below touched by Init and then by the monitor thread only.
    std::int32_t reportCount = kMaxReportCount;
    std::int64_t lastReportTime = 0;  ///< Steady clock, nanoseconds.

private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnCreate(HWND window);
    void OnDestroy();
    void OnDeviceChange(WPARAM event, const DEV_BROADCAST_HDR* header);
};

static_assert(std::atomic<HWND>::is_always_lock_free);

}  // namespace DeviceReporter
