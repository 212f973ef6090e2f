#include <windows.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

bool SelectsPaths(UINT32 flags) {
    return flags == QDC_ALL_PATHS || flags == QDC_ONLY_ACTIVE_PATHS ||
           flags == QDC_DATABASE_CURRENT;
}

/// Plans: ShortSize reports as many paths as the planned number.
LONG WINAPI FakeGetDisplayConfigBufferSizes(UINT32 flags, UINT32* pathCount, UINT32* modeCount) {
    FakeCall call("GetDisplayConfigBufferSizes", Arg{"flags", flags}, Arg{"pathCount", pathCount},
                  Arg{"modeCount", modeCount});
    if (const auto error =
            call.Refused({{pathCount == nullptr || modeCount == nullptr || !SelectsPaths(flags),
                           ERROR_INVALID_PARAMETER}},
                         FaultVariant::ShortSize)) {
        return call.ReturnsStatus(static_cast<LONG>(*error));
    }
    const auto lock = call.world().Lock();
    *pathCount = call.PlannedFault()
                     ? call.PlannedFault()->error
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
    info.targetInfo.refreshRate = {path.mode.value_or(DisplayMode{}).frequency, 1};
    info.targetInfo.targetAvailable = TRUE;
    info.targetInfo.statusFlags = DISPLAYCONFIG_TARGET_IN_USE;
    info.flags = DISPLAYCONFIG_PATH_ACTIVE;
    return info;
}

/// The modes are clear: current ones come from EnumDisplaySettingsW. Plans: SuccessWithNothing
/// succeeds with no path.
LONG WINAPI FakeQueryDisplayConfig(UINT32 flags, UINT32* pathCount, DISPLAYCONFIG_PATH_INFO* paths,
                                   UINT32* modeCount, DISPLAYCONFIG_MODE_INFO* modes,
                                   DISPLAYCONFIG_TOPOLOGY_ID* topology) {
    FakeCall call("QueryDisplayConfig", Arg{"flags", flags},
                  Arg{"pathCount", pathCount == nullptr ? 0 : *pathCount}, Arg{"paths", paths},
                  Arg{"modeCount", modeCount == nullptr ? 0 : *modeCount}, Arg{"modes", modes},
                  Arg{"topology", topology});
    // The topology is an answer of the database only.
    const bool wrong = pathCount == nullptr || modeCount == nullptr || paths == nullptr ||
                       modes == nullptr || *pathCount == 0 || *modeCount == 0 ||
                       !SelectsPaths(flags) ||
                       (flags == QDC_DATABASE_CURRENT) != (topology != nullptr);
    if (const auto error =
            call.Refused({{wrong, ERROR_INVALID_PARAMETER}}, FaultVariant::SuccessWithNothing)) {
        return call.ReturnsStatus(static_cast<LONG>(*error));
    }
    const auto lock = call.world().Lock();
    const Display& display = call.world().machine.display;
    const auto count = static_cast<UINT32>(call.PlannedFault() ? 0 : display.paths.size());
    if (*pathCount < count || *modeCount < 2 * count) {
        return call.ReturnsStatus<LONG>(ERROR_INSUFFICIENT_BUFFER);
    }
    std::fill_n(modes, 2 * count, DISPLAYCONFIG_MODE_INFO{});
    for (std::size_t i = 0; i < count; ++i) {
        paths[i] = PathInfo(display.paths[i], static_cast<UINT32>(2 * i));
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
    const bool unterminated = CurrentWorld()->machine.lies.unterminatedTexts;
    const std::size_t length = text.copy(field, unterminated ? size : size - 1);
    if (!unterminated) {
        field[length] = L'\0';
    }
}

void Answer(const DisplayPath& path, DISPLAYCONFIG_SOURCE_DEVICE_NAME& request) {
    CopyText(path.gdiName, request.viewGdiDeviceName);
}

void Answer(const DisplayPath& path, DISPLAYCONFIG_TARGET_DEVICE_NAME& request) {
    CopyText(path.friendlyName, request.monitorFriendlyDeviceName);
    CopyText(path.devicePath, request.monitorDevicePath);
}

/// Answers for the path that has the source or target which the request is about.
template <class Request>
LONG AnswerRequest(const Display& display, DISPLAYCONFIG_DEVICE_INFO_HEADER& header,
                   LUID DisplayPath::*adapter, UINT32 DisplayPath::*id) {
    if (header.size < sizeof(Request)) {
        return ERROR_INVALID_PARAMETER;
    }
    for (const DisplayPath& path : display.paths) {
        const LUID& luid = path.*adapter;
        if (header.adapterId.LowPart == luid.LowPart &&
            header.adapterId.HighPart == luid.HighPart && header.id == path.*id) {
            Answer(path, reinterpret_cast<Request&>(header));
            return ERROR_SUCCESS;
        }
    }
    return ERROR_GEN_FAILURE;
}

/// Plans: SuccessWithNothing leaves the request as it is.
LONG WINAPI FakeDisplayConfigGetDeviceInfo(DISPLAYCONFIG_DEVICE_INFO_HEADER* request) {
    FakeCall call("DisplayConfigGetDeviceInfo");
    if (request == nullptr) {
        call.Argument("request", nullptr);
    } else {
        call.Arguments({{"type", request->type},
                        {"size", request->size},
                        {"adapter", request->adapterId},
                        {"id", request->id}});
    }
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
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
    switch (request->type) {
        case DISPLAYCONFIG_DEVICE_INFO_GET_SOURCE_NAME:
            return call.ReturnsStatus(AnswerRequest<DISPLAYCONFIG_SOURCE_DEVICE_NAME>(
                display, *request, &DisplayPath::sourceAdapter, &DisplayPath::sourceId));
        case DISPLAYCONFIG_DEVICE_INFO_GET_TARGET_NAME:
            return call.ReturnsStatus(AnswerRequest<DISPLAYCONFIG_TARGET_DEVICE_NAME>(
                display, *request, &DisplayPath::targetAdapter, &DisplayPath::targetId));
        default:
            return call.ReturnsStatus<LONG>(ERROR_INVALID_PARAMETER);
    }
}

/// Without a name, the first path's source. Sources that several paths share have one mode.
const DisplayPath* FindSource(const Display& display, const wchar_t* gdiName) {
    for (const DisplayPath& path : display.paths) {
        if (gdiName == nullptr || SameName(path.gdiName.c_str(), gdiName)) {
            return &path;
        }
    }
    return nullptr;
}

/// Knows the current mode, which is also the one that the registry holds.
BOOL WINAPI FakeEnumDisplaySettingsW(const wchar_t* device, DWORD modeNumber, DEVMODEW* mode) {
    FakeCall call("EnumDisplaySettingsW", Arg{"device", device},
                  Arg{"modeNumber", static_cast<int>(modeNumber)}, Arg{"mode", mode},
                  Arg{"structureSize", mode == nullptr ? 0 : mode->dmSize});
    const auto lock = call.world().Lock();
    const DisplayPath* const source = FindSource(call.world().machine.display, device);
    const bool current =
        modeNumber == ENUM_CURRENT_SETTINGS || modeNumber == ENUM_REGISTRY_SETTINGS;
    const bool wrong = mode == nullptr || !current || source == nullptr || !source->mode;
    if (const auto error = call.Refused({{wrong, ERROR_INVALID_PARAMETER}})) {
        return call.Fails(FALSE, *error);
    }
    mode->dmFields = DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT | DM_DISPLAYFREQUENCY;
    mode->dmLogPixels = static_cast<WORD>(source->mode->logPixels);
    mode->dmBitsPerPel = source->mode->bitsPerPixel;
    mode->dmPelsWidth = source->mode->width;
    mode->dmPelsHeight = source->mode->height;
    mode->dmDisplayFrequency = source->mode->frequency;
    return call.Returns(TRUE);
}

}  // namespace

void InstallDisplayFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::GetDisplayConfigBufferSizes)>("GetDisplayConfigBufferSizes",
                                                         FakeGetDisplayConfigBufferSizes),
        Replace<decltype(::QueryDisplayConfig)>("QueryDisplayConfig", FakeQueryDisplayConfig),
        Replace<decltype(::DisplayConfigGetDeviceInfo)>("DisplayConfigGetDeviceInfo",
                                                        FakeDisplayConfigGetDeviceInfo),
        Replace<decltype(::EnumDisplaySettingsW)>("EnumDisplaySettingsW", FakeEnumDisplaySettingsW),
    });
}

}  // namespace simulation
