// Folders of the host that lack something, or have something else instead.
#include <windows.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "common/text.h"
#include "host/host_error.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using host::ExitCode;
using host::Win32ErrorText;
using test_support::ChildResult;
using test_support::RunHost;
using test_support::WriteFile;
using workbench::ToUtf8;

/// What has to stand beside the host.
constexpr const wchar_t* kInstalledFiles[] = {
    L"TallyportPlugin.dll", L"ZedPluginsManager.dll", L"LogKit.dll",         L"xeevent.dll",
    L"FileKit.dll",         L"BoardInfo.dll",         L"WmiKit.dll",         L"ConsentStore.dll",
    L"EditionAdapt.dll",    L"TuneBoostCenter.exe",   L"DeviceInventory.dll"};

/// A folder with a host that can run, but for what a test does to it.
class HostInstallation : public testing::Test {
protected:
    HostInstallation() {
        folder.Take(test_support::ProgramFolder() + L"\\tallyport_host.exe");
        for (const wchar_t* const file : kInstalledFiles) {
            folder.Take(test_support::ProgramFolder() + L"\\" + file);
        }
    }

    /// The one line of a host that refuses to start.
    std::string Complaint(const std::vector<std::wstring>& arguments = {L"--seconds", L"0"}) const {
        const ChildResult result = RunHost(arguments, folder.Path() + L"\\tallyport_host.exe");
        EXPECT_EQ(result.exitCode, static_cast<DWORD>(ExitCode::BadInput));
        EXPECT_EQ(result.output, "");
        return result.errors;
    }

    test_support::TempFolder folder;
};

TEST_F(HostInstallation, ThatLacksAFileNamesItsPlaceAndTheRemedy) {
    const std::string place = "'" + ToUtf8(folder.Path()) + "'";
    for (const wchar_t* const file : kInstalledFiles) {
        const std::wstring path = folder.Path() + L"\\" + file;
        std::filesystem::rename(path, path + L".away");
        const std::wstring name = file;
        const std::vector<std::wstring> arguments =
            name == L"DeviceInventory.dll" ? std::vector<std::wstring>{L"--list-devices"}
                                           : std::vector<std::wstring>{L"--seconds", L"0"};
        EXPECT_EQ(
            Complaint(arguments),
            "tallyport_host: " + ToUtf8(name) +
                (name == L"TallyportPlugin.dll"
                     ? " is missing in " + place +
                           "; build it: ./dev build, or name another with --plugin\n"
                     : " is missing; it belongs in " + place + ", where ./dev build puts it\n"));
        std::filesystem::rename(path + L".away", path);
    }
}

TEST_F(HostInstallation, WithADamagedLibraryNamesItAndTheRemedy) {
    WriteFile(folder.Path() + L"\\LogKit.dll", "no library");
    EXPECT_EQ(Complaint(),
              "tallyport_host: cannot load '" + ToUtf8(folder.Path() + L"\\LogKit.dll") +
                  "': " + Win32ErrorText(ERROR_BAD_EXE_FORMAT) + "; rebuild it: ./dev build\n");
}

TEST_F(HostInstallation, WithAnotherLibraryOfThatNameTellsWhatThatLacks) {
    std::filesystem::copy_file(
        test_support::ProgramFolder() + L"\\host_test_plugins\\silent_plugin.dll",
        folder.Path() + L"\\ConsentStore.dll", std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(Complaint(),
              "tallyport_host: ConsentStore.dll has no function ConsentStore_SetAnswer, so it is "
              "not the workbench's; rebuild it: ./dev build\n");
}

TEST_F(HostInstallation, SaysThatAPluginLacksALibrary) {
    const std::wstring path =
        folder.Take(test_support::ProgramFolder() + L"\\host_test_plugins\\needing_plugin.dll");
    const ChildResult result = RunHost({L"--plugin", path});
    EXPECT_EQ(result.exitCode, static_cast<DWORD>(ExitCode::RunFailed));
    EXPECT_EQ(result.errors, "tallyport_host: cannot load the plug-in '" + ToUtf8(path) +
                                 "': " + Win32ErrorText(ERROR_MOD_NOT_FOUND) +
                                 "; a library that it needs is missing: put it beside it\n");
}

}  // namespace
}  // namespace host_test
