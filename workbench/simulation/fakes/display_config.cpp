#include "simulation/fakes/display_config.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"

namespace simulation {
namespace {

bool SameLuid(const LUID& left, const LUID& right) {
    return left.LowPart == right.LowPart && left.HighPart == right.HighPart;
}

bool SelectsPaths(UINT32 flags) {
    return flags == QDC_ALL_PATHS || flags == QDC_ONLY_ACTIVE_PATHS ||
           flags == QDC_DATABASE_CURRENT;
}

/// Plans: ShortSize reports as many paths as the planned number.
LONG WINAPI FakeGetDisplayConfigBufferSizes(UINT32 flags, UINT32* pathCount, UINT32* modeCount) {
    FakeCall call("GetDisplayConfigBufferSizes");
    call.Argument("flags", flags);
    call.Argument("pathCount", pathCount);
    call.Argument("modeCount", modeCount);
    const bool shortSize = IsPlanned(call, FaultVariant::ShortSize);
    if (call.PlannedFault() && !shortSize) {
        return call.FailsWithStatus<LONG>();
    }
    if (pathCount == nullptr || modeCount == nullptr || !SelectsPaths(flags)) {
        return call.ReturnsStatus<LONG>(ERROR_INVALID_PARAMETER);
    }
    const auto lock = call.world().Lock();
    *pathCount = shortSize ? call.PlannedFault()->error
                           : static_cast<UINT32>(call.world().machine.display.paths.size());
    *modeCount = 2 * *pathCount;
    return call.ReturnsStatus<LONG>(ERROR_SUCCESS);
}

DISPLAYCONFIG_PATH_INFO PathInfo(const DisplayPath& path, UINT32 firstMode) {
    DISPLAYCONFIG_PATH_INFO info{};
    info.sourceInfo.adapterId = path.sourceAdapter;
    info.sourceInfo.id = path.sourceId;
    info.sourceInfo.modeInfoIdx = firstMode;
    info.sourceInfo.statusFlags = DISPLAYCONFIG_SOURCE_IN_USE;
    info.targetInfo.adapterId = path.targetAdapter;
    info.targetInfo.id = path.targetId;
    info.targetInfo.modeInfoIdx = firstMode + 1;
    info.targetInfo.outputTechnology = DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DISPLAYPORT_EXTERNAL;
    info.targetInfo.rotation = DISPLAYCONFIG_ROTATION_IDENTITY;
    info.targetInfo.scaling = DISPLAYCONFIG_SCALING_IDENTITY;
    info.targetInfo.refreshRate = {path.mode.value_or(DisplayMode{}).frequency, 1};
    info.targetInfo.scanLineOrdering = DISPLAYCONFIG_SCANLINE_ORDERING_PROGRESSIVE;
    info.targetInfo.targetAvailable = TRUE;
    info.targetInfo.statusFlags = DISPLAYCONFIG_TARGET_IN_USE;
    info.flags = DISPLAYCONFIG_PATH_ACTIVE;
    return info;
}

void WriteModes(const DisplayPath& path, DISPLAYCONFIG_MODE_INFO* modes) {
    const DisplayMode mode = path.mode.value_or(DisplayMode{});
    modes[0] = {};
    modes[0].infoType = DISPLAYCONFIG_MODE_INFO_TYPE_SOURCE;
    modes[0].adapterId = path.sourceAdapter;
    modes[0].id = path.sourceId;
    modes[0].sourceMode.width = mode.width;
    modes[0].sourceMode.height = mode.height;
    modes[0].sourceMode.pixelFormat = DISPLAYCONFIG_PIXELFORMAT_32BPP;
    modes[1] = {};
    modes[1].infoType = DISPLAYCONFIG_MODE_INFO_TYPE_TARGET;
    modes[1].adapterId = path.targetAdapter;
    modes[1].id = path.targetId;
    modes[1].targetMode.targetVideoSignalInfo.activeSize = {mode.width, mode.height};
    modes[1].targetMode.targetVideoSignalInfo.vSyncFreq = {mode.frequency, 1};
}

/// Plans: SuccessWithNothing succeeds with no path.
LONG WINAPI FakeQueryDisplayConfig(UINT32 flags, UINT32* pathCount, DISPLAYCONFIG_PATH_INFO* paths,
                                   UINT32* modeCount, DISPLAYCONFIG_MODE_INFO* modes,
                                   DISPLAYCONFIG_TOPOLOGY_ID* topology) {
    FakeCall call("QueryDisplayConfig");
    call.Argument("flags", flags);
    call.Argument("pathCount", pathCount == nullptr ? 0 : *pathCount);
    call.Argument("paths", paths);
    call.Argument("modeCount", modeCount == nullptr ? 0 : *modeCount);
    call.Argument("modes", modes);
    call.Argument("topology", topology);
    const bool nothing = IsPlanned(call, FaultVariant::SuccessWithNothing);
    if (call.PlannedFault() && !nothing) {
        return call.FailsWithStatus<LONG>();
    }
    // The topology is an answer of the database only.
    if (pathCount == nullptr || modeCount == nullptr || paths == nullptr || modes == nullptr ||
        *pathCount == 0 || *modeCount == 0 || !SelectsPaths(flags) ||
        (flags == QDC_DATABASE_CURRENT) != (topology != nullptr)) {
        return call.ReturnsStatus<LONG>(ERROR_INVALID_PARAMETER);
    }
    const auto lock = call.world().Lock();
    const Display& display = call.world().machine.display;
    const auto count = static_cast<UINT32>(nothing ? 0 : display.paths.size());
    if (*pathCount < count || *modeCount < 2 * count) {
        return call.ReturnsStatus<LONG>(ERROR_INSUFFICIENT_BUFFER);
    }
    for (std::size_t i = 0; i < count; ++i) {
        paths[i] = PathInfo(display.paths[i], static_cast<UINT32>(2 * i));
        WriteModes(display.paths[i], modes + 2 * i);
    }
    *pathCount = count;
    *modeCount = 2 * count;
    if (topology != nullptr) {
        *topology = static_cast<DISPLAYCONFIG_TOPOLOGY_ID>(display.topology);
    }
    return call.ReturnsStatus<LONG>(ERROR_SUCCESS);
}

template <std::size_t size>
void CopyText(const std::wstring& text, wchar_t (&field)[size]) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::wmemcpy(field, text.data(), length);
    field[length] = L'\0';
}

/// False when no path has such a source.
bool NameSource(const Display& display, DISPLAYCONFIG_SOURCE_DEVICE_NAME& request) {
    for (const DisplayPath& path : display.paths) {
        if (SameLuid(path.sourceAdapter, request.header.adapterId) &&
            path.sourceId == request.header.id) {
            CopyText(path.gdiName, request.viewGdiDeviceName);
            return true;
        }
    }
    return false;
}

/// False when no path has such a target.
bool NameTarget(const Display& display, DISPLAYCONFIG_TARGET_DEVICE_NAME& request) {
    for (const DisplayPath& path : display.paths) {
        if (SameLuid(path.targetAdapter, request.header.adapterId) &&
            path.targetId == request.header.id) {
            request.flags.value = path.friendlyName.empty() ? 0 : 1;
            request.outputTechnology = DISPLAYCONFIG_OUTPUT_TECHNOLOGY_DISPLAYPORT_EXTERNAL;
            CopyText(path.friendlyName, request.monitorFriendlyDeviceName);
            CopyText(path.devicePath, request.monitorDevicePath);
            return true;
        }
    }
    return false;
}

/// Plans: SuccessWithNothing leaves the request as it is.
LONG WINAPI FakeDisplayConfigGetDeviceInfo(DISPLAYCONFIG_DEVICE_INFO_HEADER* request) {
    FakeCall call("DisplayConfigGetDeviceInfo");
    if (request == nullptr) {
        call.Argument("request", nullptr);
    } else {
        call.Argument("type", request->type);
        call.Argument("size", request->size);
        call.Argument("adapter", request->adapterId);
        call.Argument("id", request->id);
    }
    if (IsPlanned(call, FaultVariant::SuccessWithNothing)) {
        return call.ReturnsStatus<LONG>(ERROR_SUCCESS);
    }
    if (call.PlannedFault()) {
        return call.FailsWithStatus<LONG>();
    }
    if (request == nullptr || request->size < sizeof(*request)) {
        return call.ReturnsStatus<LONG>(ERROR_GEN_FAILURE);
    }
    const auto lock = call.world().Lock();
    const Display& display = call.world().machine.display;
    bool found = false;
    if (request->type == DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME &&
        request->size >= sizeof(DISPLAYCONFIG_SOURCE_DEVICE_NAME)) {
        found = NameSource(display, *reinterpret_cast<DISPLAYCONFIG_SOURCE_DEVICE_NAME*>(request));
    } else if (request->type == DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME &&
               request->size >= sizeof(DISPLAYCONFIG_TARGET_DEVICE_NAME)) {
        found = NameTarget(display, *reinterpret_cast<DISPLAYCONFIG_TARGET_DEVICE_NAME*>(request));
    } else {
        return call.ReturnsStatus<LONG>(ERROR_INVALID_PARAMETER);
    }
    return call.ReturnsStatus<LONG>(found ? ERROR_SUCCESS : ERROR_GEN_FAILURE);
}

}  // namespace

void InstallDisplayConfigFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::GetDisplayConfigBufferSizes)>(
        "GetDisplayConfigBufferSizes", FakeGetDisplayConfigBufferSizes);
    redirection.RedirectIfImported<decltype(::QueryDisplayConfig)>("QueryDisplayConfig",
                                                                   FakeQueryDisplayConfig);
    redirection.RedirectIfImported<decltype(::DisplayConfigGetDeviceInfo)>(
        "DisplayConfigGetDeviceInfo", FakeDisplayConfigGetDeviceInfo);
}

}  // namespace simulation
