#include "host/monitor_window.h"

#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "host/patience.h"

namespace host {
namespace {

/// Null when this process has none; another one on the desktop may run the plug-in too.
HWND FindMonitorWindow() {
    HWND window = nullptr;
    DWORD owner = 0;
    do {
        window = FindWindowExW(HWND_MESSAGE, window, L"DeviceMonitorWnd", nullptr);
        GetWindowThreadProcessId(window, &owner);
    } while (window != nullptr && owner != GetCurrentProcessId());
    return window;
}

}  // namespace

bool WaitForMonitorWindow() { return WaitPatiently(&HasMonitorWindow); }

bool HasMonitorWindow() { return FindMonitorWindow() != nullptr; }

void AnnounceDevice(const simulation::Device& device, bool arrived) {
    const HWND window = FindMonitorWindow();
    if (window == nullptr) {
        return;
    }
    for (const simulation::DeviceInterface& interface_ : device.interfaces) {
        const std::size_t textBytes = (interface_.path.size() + 1) * sizeof(wchar_t);
        std::vector<BYTE> buffer(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W) + textBytes);
        auto* const notice = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(buffer.data());
        notice->dbcc_size = static_cast<DWORD>(buffer.size());
        notice->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        notice->dbcc_classguid = interface_.interfaceClass;
        std::copy_n(interface_.path.c_str(), interface_.path.size() + 1, notice->dbcc_name);
        SendMessageW(window, WM_DEVICECHANGE,
                     arrived ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE,
                     reinterpret_cast<LPARAM>(notice));
    }
}

}  // namespace host
