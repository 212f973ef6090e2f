#include "host/run/this_computer.h"

#include <windows.h>

#include <filesystem>
#include <optional>

#include "common/text.h"
#include "host/files.h"
#include "host/host_error.h"

namespace host {
namespace {

RunFailed Failed(const std::string& what, const std::string& reason) {
    return RunFailed("cannot " + what + ": " + reason +
                     "; run with more rights, or on a described machine: --machine FILE");
}

/// Of a call on the registry.
RunFailed Failed(const std::string& what, const wchar_t* valueName, LSTATUS error) {
    return Failed(what + " the registry value " + workbench::ToUtf8(valueName),
                  Win32ErrorText(static_cast<DWORD>(error)));
}

/// Version text of the Wine that this process runs under; nothing on Windows.
std::optional<std::string> WineVersion() {
    const auto version = reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
    return version == nullptr ? std::nullopt : std::optional<std::string>(version());
}

/// The executable that is installed as the component.
std::wstring ComponentSource() { return OwnFolder() + L"\\" + kComponentFileName; }

/// A value that is absent already is as good as removed.
void RemoveValue(HKEY root, const wchar_t* key, const wchar_t* name) {
    const LSTATUS error = RegDeleteKeyValueW(root, key, name);
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
        throw Failed("remove", name, error);
    }
}

}  // namespace

ThisComputer::ThisComputer(KeptState wanted, Screen& theScreen)
    : keptState(wanted), screen(theScreen) {
    if (WineVersion() && !IsFile(ComponentSource())) {
        throw BadInput(workbench::ToUtf8(kComponentFileName) + " is missing; it belongs in '" +
                       workbench::ToUtf8(OwnFolder()) + "', where ./dev build puts it");
    }
}

std::string ThisComputer::Describe() const {
    const auto wine = WineVersion();
    return wine ? "this computer (Wine " + *wine + ")" : "this computer";
}

void ThisComputer::Check(const Happening& happening) const {
    if (std::holds_alternative<PlugDevice>(happening.action)) {
        throw BadInput(happening.place +
                       ": devices are plugged on simulated machines only; "
                       "name one with --machine FILE");
    }
}

void ThisComputer::Prepare() {
    const bool underWine = WineVersion().has_value();
    if (keptState == KeptState::Remove || (keptState == KeptState::Automatic && underWine)) {
        RemoveValue(HKEY_LOCAL_MACHINE, kKeptStateKey, kBiosReportTime);
        RemoveValue(HKEY_LOCAL_MACHINE, kKeptStateKey, kReportDevicesCount);
        screen.Line(LineKind::Note,
                    "Removed what the plug-in remembered of earlier runs, so that every report is "
                    "due (--keep-state leaves it)");
    }
    if (underWine) {
        InstallComponent();
    }
}

int ThisComputer::DeviceListsSent() const {
    std::int32_t count = 0;
    DWORD size = sizeof(count);
    const LSTATUS error = RegGetValueW(HKEY_LOCAL_MACHINE, kKeptStateKey, kReportDevicesCount,
                                       RRF_RT_REG_DWORD, nullptr, &count, &size);
    return error == ERROR_SUCCESS ? count : 0;
}

void ThisComputer::InstallComponent() {
    const std::wstring target = std::wstring(kComponentFolder) + L"\\" + kComponentFileName;
    std::error_code error;
    std::filesystem::create_directories(kComponentFolder, error);
    // Several hosts may share the prefix, and one may be reading the file.
    std::filesystem::copy_file(ComponentSource(), target,
                               std::filesystem::copy_options::update_existing, error);
    if (error) {
        throw Failed("copy the optimisation component to '" + workbench::ToUtf8(target) + "'",
                     error.message());
    }
    Perform(SetSwitch{kPopUpBlockingStatus, 1});
    Perform(SetSwitch{kPowerfulModeStatus, 0});
    screen.Line(LineKind::Note,
                "Installed the optimisation component into the Wine prefix: pop-up blocking on, "
                "powerful mode off");
}

void ThisComputer::Perform(const SetSwitch& action) {
    // The same values as below HKEY_USERS and the SID of the process's user.
    const wchar_t* const key = kSwitchKeySuffix + 1;
    if (!action.value) {
        RemoveValue(HKEY_CURRENT_USER, key, action.name.c_str());
        return;
    }
    const std::int32_t value = *action.value;
    const LSTATUS error = RegSetKeyValueW(HKEY_CURRENT_USER, key, action.name.c_str(), REG_DWORD,
                                          &value, sizeof(value));
    if (error != ERROR_SUCCESS) {
        throw Failed("set", action.name.c_str(), error);
    }
}

}  // namespace host
