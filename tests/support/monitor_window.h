// The device monitor's message-only window in this process.
#pragma once

#include <windows.h>

namespace test_support {

/// Null when there is none.
HWND FindMonitorWindow();

/// Waits until the window exists and its thread handles messages, so that a Stop reaches it. False
/// when that did not come about within ten seconds.
bool MonitorHandlesMessages();

}  // namespace test_support
