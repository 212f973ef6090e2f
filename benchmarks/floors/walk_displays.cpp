#include <windows.h>

#include "floors/plain_calls.h"

namespace benchmarks {
namespace {

constexpr std::size_t kMaxDisplays = 64;
/// Of one of the sample machine's monitors.
constexpr char kKey[] =
    "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\HWP2718\\4&1f9d0a6b&0&UID0\\Device Parameters";

template <class Request>
void Ask(Request& request, DISPLAYCONFIG_DEVICE_INFO_TYPE type, UINT32 id) {
    request.header = {type, sizeof(request), /*adapterId=*/{}, id};
    DisplayConfigGetDeviceInfo(&request.header);
}

void ReadEdid() {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ, &key);
    DWORD type = 0;
    DWORD size = 0;
    BYTE edid[256];
    RegQueryValueExA(key, "EDID", nullptr, &type, nullptr, &size);
    RegQueryValueExA(key, "EDID", nullptr, &type, edid, &size);
    RegCloseKey(key);
}

}  // namespace

std::size_t WalkDisplays() {
    UINT32 pathCount = 0;
    UINT32 modeCount = 0;
    static DISPLAYCONFIG_PATH_INFO paths[kMaxDisplays];
    static DISPLAYCONFIG_MODE_INFO modes[2 * kMaxDisplays];
    DISPLAYCONFIG_TOPOLOGY_ID topology{};
    GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount);
    QueryDisplayConfig(QDC_DATABASE_CURRENT, &pathCount, paths, &modeCount, modes, &topology);
    for (UINT32 i = 0; i < pathCount; ++i) {
        DISPLAYCONFIG_SOURCE_DEVICE_NAME source;
        Ask(source, DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME, paths[i].sourceInfo.id);
        DISPLAYCONFIG_TARGET_DEVICE_NAME target;
        Ask(target, DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME, paths[i].targetInfo.id);
        ReadEdid();
        DEVMODEW mode{};
        mode.dmSize = sizeof(mode);
        EnumDisplaySettingsW(source.viewGdiDeviceName, ENUM_CURRENT_SETTINGS, &mode);
    }
    return pathCount;
}

}  // namespace benchmarks
