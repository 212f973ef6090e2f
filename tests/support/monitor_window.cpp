#include "support/monitor_window.h"

namespace test_support {

HWND FindMonitorWindow() {
    HWND window = nullptr;
    // Other processes may have such windows, too.
    while ((window = FindWindowExW(HWND_MESSAGE, window, L"DeviceMonitorWnd",
                                   /*lpszWindow=*/nullptr)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) {
            return window;
        }
    }
    return nullptr;
}

bool MonitorHandlesMessages() {
    for (int i = 0; i < 1000; ++i) {
        const HWND window = FindMonitorWindow();
        if (window != nullptr) {
            DWORD_PTR result = 0;
            return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, /*uTimeout=*/10'000,
                                       &result) != 0;
        }
        Sleep(10);
    }
    return false;
}

}  // namespace test_support
