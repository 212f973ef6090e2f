#include "simulation/device_happenings.h"

#include <windows.h>
#include <dbt.h>

#include <cstddef>
#include <cstring>
#include <vector>

namespace simulation {
namespace {

constexpr wchar_t kMonitorWindowClass[] = L"DeviceMonitorWnd";

/// The notification's structure with the path behind it, terminator included.
std::vector<BYTE> NotificationBlock(const DeviceInterface& changed) {
    const std::size_t pathBytes = (changed.path.size() + 1) * sizeof(wchar_t);
    std::vector<BYTE> block(offsetof(DEV_BROADCAST_DEVICEINTERFACE_W, dbcc_name) + pathBytes);
    DEV_BROADCAST_DEVICEINTERFACE_W head{};
    head.dbcc_size = static_cast<DWORD>(block.size());
    head.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    head.dbcc_classguid = changed.interfaceClass;
    std::memcpy(block.data(), &head, offsetof(DEV_BROADCAST_DEVICEINTERFACE_W, dbcc_name));
    std::memcpy(block.data() + offsetof(DEV_BROADCAST_DEVICEINTERFACE_W, dbcc_name),
                changed.path.c_str(), pathBytes);
    return block;
}

Delivery Send(UINT event, const DeviceInterface& changed, std::chrono::milliseconds patience) {
    const HWND window = FindMonitorWindow();
    if (window == nullptr) {
        return Delivery::NoWindow;
    }
    // Within one process the address is handed over as it is.
    std::vector<BYTE> block = NotificationBlock(changed);
    DWORD_PTR answer = 0;
    const LRESULT sent =
        SendMessageTimeoutW(window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(block.data()),
                            SMTO_NORMAL, static_cast<UINT>(patience.count()), &answer);
    if (sent != 0) {
        return Delivery::Delivered;
    }
    if (!IsWindow(window)) {
        return Delivery::NoWindow;
    }
    // The monitor may still be reading it.
    static std::vector<std::vector<BYTE>> unanswered;
    unanswered.push_back(std::move(block));
    return Delivery::TimedOut;
}

}  // namespace

HWND FindMonitorWindow() {
    HWND after = nullptr;
    for (;;) {
        const HWND window = FindWindowExW(HWND_MESSAGE, after, kMonitorWindowClass, nullptr);
        // Another process may have closed its window meanwhile: then from the first again.
        if (window == nullptr && (after == nullptr || IsWindow(after))) {
            return nullptr;
        }
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (window != nullptr && process == GetCurrentProcessId()) {
            return window;
        }
        after = window;
    }
}

Delivery Announce(UINT event, const Device& device, std::chrono::milliseconds patience) {
    for (const DeviceInterface& changed : device.interfaces) {
        const Delivery delivery = Send(event, changed, patience);
        if (delivery != Delivery::Delivered) {
            return delivery;
        }
    }
    return FindMonitorWindow() == nullptr ? Delivery::NoWindow : Delivery::Delivered;
}

Delivery PlugDevice(World& world, const Device& device, std::chrono::milliseconds patience) {
    world.Plug(device);
    return Announce(DBT_DEVICEARRIVAL, device, patience);
}

Delivery UnplugDevice(World& world, const std::wstring& instanceId,
                      std::chrono::milliseconds patience) {
    return Announce(DBT_DEVICEREMOVECOMPLETE, world.Unplug(instanceId), patience);
}

}  // namespace simulation
