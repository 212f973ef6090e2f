#include "host/this_computer.h"

#include <filesystem>

#include "host/files.h"
#include "host/host_error.h"
#include "host/kept_state.h"
#include "host/own_account.h"
#include "host/win32_error.h"
#include "host/wine.h"
#include "standins/common/text.h"

namespace host {
namespace {

HostError Failed(const std::string& what, LSTATUS error) {
    return HostError(ExitCode::RunFailed,
                     "cannot " + what + ": " + Win32ErrorText(static_cast<DWORD>(error)) +
                         "; run with more rights, or on a described machine: --machine FILE");
}

/// The executable that is installed as the component.
std::wstring ComponentSource() { return OwnFolder() + L"\\" + kComponentFileName; }

/// A value that is absent already is as good as removed.
void RemoveValue(HKEY root, const std::wstring& key, const wchar_t* name) {
    const LSTATUS error = RegDeleteKeyValueW(root, key.c_str(), name);
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
        throw Failed("remove the registry value " + standins::ToUtf8(name), error);
    }
}

bool IsSameFile(const std::wstring& left, const std::wstring& right) {
    WIN32_FILE_ATTRIBUTE_DATA leftData{};
    WIN32_FILE_ATTRIBUTE_DATA rightData{};
    if (!GetFileAttributesExW(left.c_str(), GetFileExInfoStandard, &leftData) ||
        !GetFileAttributesExW(right.c_str(), GetFileExInfoStandard, &rightData)) {
        return false;
    }
    return leftData.nFileSizeLow == rightData.nFileSizeLow &&
           CompareFileTime(&leftData.ftLastWriteTime, &rightData.ftLastWriteTime) == 0;
}

}  // namespace

ThisComputer::ThisComputer(KeptState wanted, Screen& theScreen)
    : keptState(wanted), screen(theScreen) {
    if (WineVersion() && !IsFile(ComponentSource())) {
        throw HostError(ExitCode::BadInput,
                        standins::ToUtf8(kComponentFileName) + " is missing; it belongs into '" +
                            standins::ToUtf8(OwnFolder()) + "', where ./dev build puts it");
    }
}

std::string ThisComputer::Describe() const {
    const auto wine = WineVersion();
    return wine ? "this computer (Wine " + *wine + ")" : "this computer";
}

void ThisComputer::Check(const Happening& happening) const {
    if (std::holds_alternative<PlugDevice>(happening.action)) {
        throw HostError(ExitCode::BadInput, happening.place +
                                                ": devices are plugged on simulated machines only; "
                                                "name one with --machine FILE");
    }
}

void ThisComputer::Prepare() {
    const bool underWine = WineVersion().has_value();
    if (keptState == KeptState::Remove || (keptState == KeptState::Automatic && underWine)) {
        RemoveKeptState();
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

void ThisComputer::RemoveKeptState() {
    RemoveValue(HKEY_LOCAL_MACHINE, kKeptStateKey, kBiosReportTime);
    RemoveValue(HKEY_LOCAL_MACHINE, kKeptStateKey, kReportDevicesCount);
    screen.Line(LineKind::Note,
                "Removed what the plug-in remembered of earlier runs, so that every report is due "
                "(--keep-state leaves it)");
}

void ThisComputer::InstallComponent() {
    const std::wstring source = ComponentSource();
    const std::wstring target = std::wstring(kComponentFolder) + L"\\" + kComponentFileName;
    std::error_code ignored;  // The copy tells what is wrong.
    std::filesystem::create_directories(kComponentFolder, ignored);
    // Several hosts may share the prefix, and one may be reading the file.
    if (!IsSameFile(source, target) &&
        !CopyFileW(source.c_str(), target.c_str(), /*bFailIfExists=*/FALSE)) {
        throw Failed("copy the optimisation component to '" + standins::ToUtf8(target) + "'",
                     static_cast<LSTATUS>(GetLastError()));
    }
    Perform(SetSwitch{kPopUpBlockingStatus, 1});
    Perform(SetSwitch{kPowerfulModeStatus, 0});
    screen.Line(LineKind::Note,
                "Installed the optimisation component into the Wine prefix: pop-up blocking on, "
                "powerful mode off");
}

void ThisComputer::Perform(const SetSwitch& action) {
    const std::wstring key = OwnSid() + kSwitchKeySuffix;
    if (!action.value) {
        RemoveValue(HKEY_USERS, key, action.name.c_str());
        return;
    }
    const std::int32_t value = *action.value;
    const LSTATUS error = RegSetKeyValueW(HKEY_USERS, key.c_str(), action.name.c_str(), REG_DWORD,
                                          &value, sizeof(value));
    if (error != ERROR_SUCCESS) {
        throw Failed("set the registry value " + standins::ToUtf8(action.name), error);
    }
}

}  // namespace host
