#include "host/run/monitor_window.h"

#include <windows.h>
#include <dbt.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "simulation/device_happenings.h"

namespace host {

bool HasMonitorWindow() { return simulation::FindMonitorWindow() != nullptr; }

void AnnounceDevice(const simulation::Device& device, bool arrived) {
    const HWND window = simulation::FindMonitorWindow();
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
