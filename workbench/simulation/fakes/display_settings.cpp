#include "simulation/fakes/display_settings.h"

#include <windows.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"

namespace simulation {
namespace {

/// Without a name, the first path's source. Sources that several paths share have one mode.
const DisplayPath* FindSource(const Display& display, const wchar_t* gdiName) {
    for (const DisplayPath& path : display.paths) {
        if (gdiName == nullptr || SameName(path.gdiName, gdiName)) {
            return &path;
        }
    }
    return nullptr;
}

/// Knows the current mode, which is also the one that the registry holds.
BOOL WINAPI FakeEnumDisplaySettingsW(const wchar_t* device, DWORD modeNumber, DEVMODEW* mode) {
    FakeCall call("EnumDisplaySettingsW");
    call.Argument("device", device);
    call.Argument("modeNumber", static_cast<int>(modeNumber));
    call.Argument("mode", mode);
    call.Argument("structureSize", mode == nullptr ? 0 : mode->dmSize);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto lock = call.world().Lock();
    const DisplayPath* const source = FindSource(call.world().machine.display, device);
    const bool current =
        modeNumber == ENUM_CURRENT_SETTINGS || modeNumber == ENUM_REGISTRY_SETTINGS;
    if (mode == nullptr || !current || source == nullptr || !source->mode) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
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

void InstallDisplaySettingsFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::EnumDisplaySettingsW)>("EnumDisplaySettingsW",
                                                                     FakeEnumDisplaySettingsW);
}

}  // namespace simulation
