#include <array>
#include <cstring>
#include <cwchar>

#include "instant/instant_calls.h"

namespace benchmarks {
namespace {

UINT32 pathCount = 0;

/// A manufacturer id (bytes 8 and 9) is all that the plug-in looks at.
constexpr std::array<BYTE, 256> kEdid = {0, 255, 255, 255, 255, 255, 255, 0, 0x22, 0xF0, 1, 2};

LONG WINAPI GetBufferSizes(UINT32, UINT32* paths, UINT32* modes) {
    *paths = pathCount;
    *modes = 2 * pathCount;
    return ERROR_SUCCESS;
}

LONG WINAPI QueryConfig(UINT32, UINT32* count, DISPLAYCONFIG_PATH_INFO* paths, UINT32*,
                        DISPLAYCONFIG_MODE_INFO*, DISPLAYCONFIG_TOPOLOGY_ID* topology) {
    *topology = DISPLAYCONFIG_TOPOLOGY_EXTEND;
    for (UINT32 i = 0; i < *count; ++i) {
        paths[i].sourceInfo.id = i;
        paths[i].targetInfo.id = i;
    }
    return ERROR_SUCCESS;
}

LONG WINAPI GetDeviceInfo(DISPLAYCONFIG_DEVICE_INFO_HEADER* header) {
    if (header->type == DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME) {
        auto* const source = reinterpret_cast<DISPLAYCONFIG_SOURCE_DEVICE_NAME*>(header);
        std::wcscpy(source->viewGdiDeviceName, L"\\\\.\\DISPLAY1");
    } else {
        auto* const target = reinterpret_cast<DISPLAYCONFIG_TARGET_DEVICE_NAME*>(header);
        std::wcscpy(target->monitorFriendlyDeviceName, L"Lumen 27 QHD");
        std::wcscpy(target->monitorDevicePath,
                    L"\\\\?\\DISPLAY#HWP2718#4&1f9d0a6b&0&UID8261"
                    L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}");
    }
    return ERROR_SUCCESS;
}

BOOL WINAPI EnumSettings(const wchar_t*, DWORD, DEVMODEW* mode) {
    mode->dmPelsWidth = 2560;
    mode->dmPelsHeight = 1440;
    mode->dmDisplayFrequency = 60;
    mode->dmLogPixels = 96;
    mode->dmBitsPerPel = 32;
    return TRUE;
}

LSTATUS WINAPI OpenKey(HKEY, const char*, DWORD, REGSAM, HKEY* key) {
    *key = reinterpret_cast<HKEY>(&pathCount);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI QueryValue(HKEY, const char*, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
    *type = REG_BINARY;
    *size = kEdid.size();
    if (data != nullptr) {
        std::memcpy(data, kEdid.data(), kEdid.size());
    }
    return ERROR_SUCCESS;
}

LSTATUS WINAPI CloseKey(HKEY) { return ERROR_SUCCESS; }

}  // namespace

void PutInstantDisplays(simulation::ImportRedirection& redirection) {
    Put(redirection, "GetDisplayConfigBufferSizes", reinterpret_cast<void*>(&GetBufferSizes));
    Put(redirection, "QueryDisplayConfig", reinterpret_cast<void*>(&QueryConfig));
    Put(redirection, "DisplayConfigGetDeviceInfo", reinterpret_cast<void*>(&GetDeviceInfo));
    Put(redirection, "EnumDisplaySettingsW", reinterpret_cast<void*>(&EnumSettings));
    Put(redirection, "RegOpenKeyExA", reinterpret_cast<void*>(&OpenKey));
    Put(redirection, "RegQueryValueExA", reinterpret_cast<void*>(&QueryValue));
    Put(redirection, "RegCloseKey", reinterpret_cast<void*>(&CloseKey));
}

void SetInstantDisplays(std::size_t count) { pathCount = static_cast<UINT32>(count); }

}  // namespace benchmarks
