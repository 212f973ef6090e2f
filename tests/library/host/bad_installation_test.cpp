// Folders of the host that lack something, or have something else instead.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "host/host_error.h"
#include "host/win32_error.h"
#include "library/host/host_program.h"
#include "standins/common/text.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using host::Win32ErrorText;
using standins::ToUtf8;
using test_support::ChildResult;
using test_support::TempFolder;

constexpr DWORD kBadInput = static_cast<DWORD>(host::ExitCode::BadInput);

/// What has to stand beside the host.
const std::vector<std::wstring> kInstalledFiles{
    L"tallyport_host.exe", L"TallyportPlugin.dll", L"ZedPluginsManager.dll", L"LogKit.dll",
    L"xeevent.dll",        L"FileKit.dll",         L"BoardInfo.dll",         L"WmiKit.dll",
    L"ConsentStore.dll",   L"EditionAdapt.dll",    L"TuneBoostCenter.exe"};

/// A folder with a host that can run, but for what a test does to it.
class Installation {
public:
    explicit Installation(const std::wstring& missing = {}) {
        for (const std::wstring& file : kInstalledFiles) {
            if (file != missing) {
                folder.Take(test_support::ProgramFolder() + L"\\" + file);
            }
        }
    }

    std::wstring File(const std::wstring& name) const { return folder.Path() + L"\\" + name; }

    /// The one line of a host that refuses to start.
    std::string Complaint(std::vector<std::wstring> arguments = {L"--seconds", L"0"}) const {
        const ChildResult result = RunHost(arguments, File(L"tallyport_host.exe"));
        EXPECT_EQ(result.exitCode, kBadInput);
        EXPECT_EQ(result.output, "");
        return result.errors;
    }

    TempFolder folder;
};

class HostMissingLibrary : public testing::TestWithParam<std::wstring> {};

TEST_P(HostMissingLibrary, IsNamedWithItsPlaceAndTheRemedy) {
    const Installation installation(GetParam());
    const std::string place = "'" + ToUtf8(installation.folder.Path()) + "'";
    EXPECT_EQ(
        installation.Complaint(),
        "tallyport_host: " + ToUtf8(GetParam()) +
            (GetParam() == L"TallyportPlugin.dll"
                 ? " is missing in " + place +
                       "; build it: ./dev build, or name another with --plugin\n"
                 : " is missing; it belongs into " + place + ", where ./dev build puts it\n"));
}

INSTANTIATE_TEST_SUITE_P(Each, HostMissingLibrary,
                         testing::ValuesIn(kInstalledFiles.begin() + 1, kInstalledFiles.end()));

TEST(HostInstallation, WithADamagedLibraryNamesItAndTheRemedy) {
    const Installation installation;
    WriteFile(installation.File(L"LogKit.dll"), "no library");
    EXPECT_EQ(installation.Complaint(),
              "tallyport_host: cannot load '" + ToUtf8(installation.File(L"LogKit.dll")) +
                  "': " + Win32ErrorText(ERROR_BAD_EXE_FORMAT) + "; build it anew: ./dev build\n");
}

TEST(HostInstallation, WithAnotherLibraryOfThatNameTellsWhatThatLacks) {
    const Installation installation;
    std::filesystem::copy_file(PluginFolder() + L"\\silent_plugin.dll",
                               installation.File(L"ConsentStore.dll"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_THAT(
        installation.Complaint(),
        testing::MatchesRegex("tallyport_host: ConsentStore.dll has no function \\w+, so it "
                              "is not the workbench's; build it anew: ./dev build\n"));
}

TEST(HostInstallation, WithoutTheInventoryTellsSoWhenThatIsAskedFor) {
    const Installation installation;
    EXPECT_EQ(installation.Complaint({L"--list-devices"}),
              "tallyport_host: DeviceInventory.dll is missing; it belongs into '" +
                  ToUtf8(installation.folder.Path()) + "', where ./dev build puts it\n");
}

}  // namespace
}  // namespace host_test
