#include "device_reporter/display_info.h"

#include <cstddef>
#include <utility>

#include "device_reporter/edid_registry.h"
#include "report/log_line.h"
#include "util/fixed_text.h"

namespace DeviceReporter {

namespace {

static_assert(sizeof(DISPLAYCONFIG_SOURCE_DEVICE_NAME) == 84);
static_assert(sizeof(DISPLAYCONFIG_TARGET_DEVICE_NAME) == 420);
static_assert(sizeof(DEVMODEW) == 220);

constexpr char kGetDisplayInfoFunction[] = "`anonymous-namespace'::GetDisplayInfo";

/// Sends one request for a path's source or target.
template <typename Request>
LONG SendDisplayRequest(Request& request, DISPLAYCONFIG_DEVICE_INFO_TYPE type, LUID adapterId,
                        UINT32 id) {
    request.header.type = type;
    request.header.size = sizeof(request);
    request.header.adapterId = adapterId;
    request.header.id = id;
    return DisplayConfigGetDeviceInfo(&request.header);
}

bool GetDisplaySourceDeviceName(const DISPLAYCONFIG_PATH_INFO& path, DisplayInfo& info) {
    DISPLAYCONFIG_SOURCE_DEVICE_NAME source{};
    const LONG result = SendDisplayRequest(source, DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME,
                                           path.sourceInfo.adapterId, path.sourceInfo.id);
    if (result != ERROR_SUCCESS) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::GetDisplaySourceDeviceName",
                     "Display get source device name failed!");
        return false;
    }
    info.sourceName = TextOf(source.viewGdiDeviceName);
    return true;
}

bool GetDisplayTargetDeviceName(const DISPLAYCONFIG_PATH_INFO& path, DisplayInfo& info) {
    DISPLAYCONFIG_TARGET_DEVICE_NAME target{};
    // Kept: the source's adapter, for the target too. A path does not cross adapters.
    const LONG result = SendDisplayRequest(target, DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME,
                                           path.sourceInfo.adapterId, path.targetInfo.id);
    if (result != ERROR_SUCCESS) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::GetDisplayTargetDeviceName",
                     "Display get target device name failed! ret = ", result);
        return false;
    }
    info.monitorName = TextOf(target.monitorFriendlyDeviceName);
    info.monitorDevicePath = TextOf(target.monitorDevicePath);
    return true;
}

bool GetEdid(DisplayInfo& info) {
    info.edidRegPath = GetEditRegPath(info.monitorDevicePath);
    if (info.edidRegPath.empty()) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::GetDisplayInfoFromPathInfo",
                     "Get EditRegPath failed");
        return false;
    }
    std::vector<std::wstring> data;
    if (!GetDataFromReg(info.edidRegPath, data) || data.size() < 2) {
        return false;
    }
    info.edidHex = data[0];
    info.edidVendor = data[1];
    return true;
}

bool GetDevModeInfo(DisplayInfo& info) {
    DEVMODEW mode{};
    mode.dmSize = sizeof(mode);
    if (!EnumDisplaySettingsW(info.sourceName.c_str(), ENUM_CURRENT_SETTINGS, &mode)) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::GetDevModeInfo",
                     "EnumDisplaySettings failed!");
        return false;
    }
    info.width = static_cast<std::uint16_t>(mode.dmPelsWidth);
    info.height = static_cast<std::uint16_t>(mode.dmPelsHeight);
    info.refreshRate = static_cast<std::uint16_t>(mode.dmDisplayFrequency);
    info.logPixels = static_cast<std::uint16_t>(mode.dmLogPixels);
    // Kept: a quarter of the bits, 8 for a display of 32 bits per pixel.
    info.colorDepth = static_cast<std::uint16_t>(mode.dmBitsPerPel >> 2);
    return true;
}

}  // namespace

bool GetDisplayInfo(std::vector<DisplayInfo>& displays) {
    UINT32 pathCount = 0;
    UINT32 modeCount = 0;
    if (GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount) !=
        ERROR_SUCCESS) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetDisplayInfoFunction,
                     "GetDisplayConfigBufferSizes failed!");
        return false;
    }
    std::vector<DISPLAYCONFIG_PATH_INFO> paths(pathCount);
    std::vector<DISPLAYCONFIG_MODE_INFO> modes(modeCount);
    DISPLAYCONFIG_TOPOLOGY_ID topologyId = DISPLAYCONFIG_TOPOLOGY_INTERNAL;
    // Kept: sized for the active paths, asked of the database, and asked once, whether or not that
    // fits. Only the database query gives the topology.
    if (QueryDisplayConfig(QDC_DATABASE_CURRENT, &pathCount, paths.data(), &modeCount, modes.data(),
                           &topologyId) != ERROR_SUCCESS) {
        WriteLogLine(LOG_LEVEL_NORMAL, kGetDisplayInfoFunction, "QueryDisplayConfig failed!");
        return false;
    }
    // Kept: as many paths as the query counts. There may be fewer than there is room for; one
    // beyond the room would be empty, and its description would fail and log that.
    paths.resize(pathCount);
    const std::wstring displayMode = GetDisplayMode(topologyId);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        DisplayInfo info;
        info.displayMode = displayMode;
        if (!GetDisplayInfoFromPathInfo(paths[i], info, i == 0)) {
            return false;
        }
        displays.push_back(std::move(info));
    }
    return true;
}

std::wstring GetDisplayMode(DISPLAYCONFIG_TOPOLOGY_ID topologyId) {
    switch (topologyId) {
        case DISPLAYCONFIG_TOPOLOGY_INTERNAL:
            return L"INTERNAL";
        case DISPLAYCONFIG_TOPOLOGY_CLONE:
            return L"CLONE";
        case DISPLAYCONFIG_TOPOLOGY_EXTEND:
            return L"EXTEND";
        case DISPLAYCONFIG_TOPOLOGY_EXTERNAL:
            return L"EXTERNAL";
        default:
            WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::GetDisplayMode",
                         "GetUnknownDisplayMode:", static_cast<UINT32>(topologyId));
            return L"UNKNOWN";
    }
}

bool GetDisplayInfoFromPathInfo(const DISPLAYCONFIG_PATH_INFO& path, DisplayInfo& info,
                                bool isFirstPath) {
    info.isFirstPath = isFirstPath;
    return GetDisplaySourceDeviceName(path, info) && GetDisplayTargetDeviceName(path, info) &&
           GetEdid(info) && GetDevModeInfo(info);
}

}  // namespace DeviceReporter
