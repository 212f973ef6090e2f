#include <windows.h>

#include <algorithm>
#include <cstring>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

/// A version resource that has only its root: numbers, but no texts. This is the form in which the
/// system stores it, so its own VerQueryValueW reads it.
struct VersionResource {
    WORD length = sizeof(VersionResource);
    WORD valueLength = sizeof(VS_FIXEDFILEINFO);
    WORD type = 0;  // Binary.
    wchar_t key[16] = L"VS_VERSION_INFO";
    WORD padding = 0;  // The value begins at a multiple of four.
    VS_FIXEDFILEINFO numbers{};
};
static_assert(sizeof(VersionResource) == 40 + sizeof(VS_FIXEDFILEINFO));

decltype(::VerQueryValueW)* realVerQueryValueW = nullptr;

constexpr DWORD Pair(WORD high, WORD low) { return static_cast<DWORD>(high) << 16 | low; }

VersionResource ResourceOf(const FileVersion& version) {
    VersionResource resource;
    VS_FIXEDFILEINFO& numbers = resource.numbers;
    numbers.dwSignature = VS_FFI_SIGNATURE;
    numbers.dwStrucVersion = VS_FFI_STRUCVERSION;
    numbers.dwFileVersionMS = Pair(version.file[0], version.file[1]);
    numbers.dwFileVersionLS = Pair(version.file[2], version.file[3]);
    numbers.dwProductVersionMS = Pair(version.product[0], version.product[1]);
    numbers.dwProductVersionLS = Pair(version.product[2], version.product[3]);
    numbers.dwFileFlagsMask = VS_FFI_FILEFLAGSMASK;
    numbers.dwFileOS = VOS_NT_WINDOWS32;
    numbers.dwFileType = VFT_APP;
    return resource;
}

std::optional<VersionResource> FindResource(World& world, const wchar_t* path) {
    const auto lock = world.Lock();
    for (const auto& [knownPath, version] : world.machine.fileVersions) {
        if (path != nullptr && SameName(knownPath, path)) {
            return ResourceOf(version);
        }
    }
    return std::nullopt;
}

/// Plans: Fail returns 0, ShortSize the planned number.
DWORD WINAPI FakeGetFileVersionInfoSizeW(const wchar_t* path, DWORD* handle) {
    FakeCall call("GetFileVersionInfoSizeW", Arg{"path", path}, Arg{"handle", handle});
    if (call.IsPlanned(FaultVariant::ShortSize)) {
        return call.Returns(call.PlannedFault()->error);
    }
    if (call.PlannedFault()) {
        return call.Fails<DWORD>(0);
    }
    if (handle != nullptr) {
        *handle = 0;
    }
    if (path == nullptr || *path == L'\0') {
        return call.Fails<DWORD>(0, path == nullptr ? ERROR_INVALID_PARAMETER : ERROR_BAD_PATHNAME);
    }
    if (!FindResource(call.world(), path)) {
        return call.Fails<DWORD>(0, ERROR_FILE_NOT_FOUND);
    }
    return call.Returns<DWORD>(sizeof(VersionResource));
}

/// Plans: SuccessWithNothing leaves the block as it is.
BOOL WINAPI FakeGetFileVersionInfoW(const wchar_t* path, DWORD handle, DWORD size, void* block) {
    FakeCall call("GetFileVersionInfoW", Arg{"path", path}, Arg{"handle", handle},
                  Arg{"size", size}, Arg{"block", static_cast<const void*>(block)});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    const std::optional<VersionResource> resource = FindResource(call.world(), path);
    if (const auto error = call.Refused(
            {{!resource, ERROR_FILE_NOT_FOUND}, {block == nullptr, ERROR_INVALID_DATA}})) {
        return call.Fails(FALSE, *error);
    }
    // A block that is too small gets what fits.
    std::memcpy(block, &*resource, std::min<std::size_t>(size, sizeof(*resource)));
    return call.Returns(TRUE);
}

/// Plans: NullResult succeeds with a null pointer, SuccessWithNothing and ShortSize with the value
/// and a length of 0 and of the planned number.
BOOL WINAPI FakeVerQueryValueW(const void* block, const wchar_t* subBlock, void** value,
                               UINT* length) {
    FakeCall call("VerQueryValueW", Arg{"block", block}, Arg{"subBlock", subBlock});
    const std::optional<Fault> planned = call.PlannedFault();
    if (planned && planned->variant == FaultVariant::Fail) {
        return call.Fails(FALSE);
    }
    const BOOL found = call.PassTo(realVerQueryValueW, block, subBlock, value, length);
    if (planned) {
        *value = planned->variant == FaultVariant::NullResult ? nullptr : *value;
        *length = planned->variant == FaultVariant::ShortSize ? planned->error : 0;
        return call.Returns(TRUE);
    }
    return found;
}

}  // namespace

void InstallVersionInfoFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::GetFileVersionInfoSizeW)>("GetFileVersionInfoSizeW",
                                                     FakeGetFileVersionInfoSizeW),
        Replace<decltype(::GetFileVersionInfoW)>("GetFileVersionInfoW", FakeGetFileVersionInfoW),
        {"VerQueryValueW", FakeVerQueryValueW, &realVerQueryValueW},
    });
}

}  // namespace simulation
