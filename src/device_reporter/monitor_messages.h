// Private messages of the monitor's window.
#pragma once

#include <windows.h>

namespace DeviceReporter {

/// Asks the monitor to send the device list if it is due. Carries nothing.
inline constexpr UINT WM_REPORT_DEVICES = WM_USER + 1001;

}  // namespace DeviceReporter
