// Plug-ins that do not behave, and installations that lack something.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

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

constexpr DWORD kRunFailed = static_cast<DWORD>(host::ExitCode::RunFailed);
constexpr DWORD kBadInput = static_cast<DWORD>(host::ExitCode::BadInput);

TEST(HostPlugin, ThatIsNoLibraryIsToldAsSuch) {
    const TempFolder folder;
    const std::wstring path = folder.Path() + L"\\text.dll";
    WriteFile(path, "no library");
    const ChildResult result = RunHost({L"--plugin", path});
    EXPECT_EQ(result.exitCode, kRunFailed);
    EXPECT_EQ(result.errors, "tallyport_host: cannot load the plug-in '" + ToUtf8(path) +
                                 "': " + Win32ErrorText(ERROR_BAD_EXE_FORMAT) +
                                 "; is it a 64-bit Windows library?\n");
}

struct BadPlugin {
    const wchar_t* fileName;
    std::string message;
};

std::ostream& operator<<(std::ostream& stream, const BadPlugin& plugin) {
    return stream << ToUtf8(plugin.fileName);
}

class HostBadPlugin : public testing::TestWithParam<BadPlugin> {};

TEST_P(HostBadPlugin, IsToldInOneLine) {
    const std::wstring path = PluginFolder() + L"\\" + GetParam().fileName;
    const ChildResult result = RunHost({L"--seconds", L"0", L"--plugin", path});
    EXPECT_EQ(result.exitCode, kRunFailed);
    std::string message = GetParam().message;
    if (const std::size_t at = message.find("{path}"); at != std::string::npos) {
        message.replace(at, 6, ToUtf8(path));
    }
    EXPECT_EQ(result.errors, "tallyport_host: " + message + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, HostBadPlugin,
    testing::Values(BadPlugin{L"refusing_plugin.dll",
                              "cannot load the plug-in '{path}': " +
                                  Win32ErrorText(ERROR_DLL_INIT_FAILED) +
                                  "; its entry point refused, as it does without a plug-in "
                                  "manager"},
                    BadPlugin{L"silent_plugin.dll",
                              "'{path}' registered no plug-in with the manager when it was loaded; "
                              "is it a plug-in?"},
                    BadPlugin{L"unwilling_registration.dll",
                              "'{path}' registered no factory; it cannot be created"},
                    BadPlugin{L"unwilling_factory.dll", "the plug-in's factory failed"},
                    BadPlugin{L"unwilling_initialize.dll", "the plug-in's Initialize failed"},
                    BadPlugin{L"unwilling_start.dll", "the plug-in's Start failed"},
                    BadPlugin{L"unwilling_stop.dll", "the plug-in's Stop failed"},
                    BadPlugin{L"unwilling_uninitialize.dll", "the plug-in's Uninitialize failed"}));

TEST(HostPlugin, IsTakenDownAsFarAsItCame) {
    const ChildResult result = RunHost({L"--plugin", PluginFolder() + L"\\unwilling_start.dll"});
    EXPECT_THAT(
        ShownLines(result.output, "step"),
        testing::ElementsAre("Loaded ZedPluginsManager.dll and the other libraries of "
                             "the suite",
                             "Load unwilling_start.dll", "It registered itself as unwilling",
                             "Create it through its factory", "Initialize", "Start", "Uninitialize",
                             "Unload unwilling_start.dll"));
}

/// What has to stand beside the host.
const std::vector<std::wstring> kInstalledFiles{
    L"tallyport_host.exe", L"TallyportPlugin.dll", L"ZedPluginsManager.dll", L"LogKit.dll",
    L"xeevent.dll",        L"FileKit.dll",         L"BoardInfo.dll",         L"WmiKit.dll",
    L"ConsentStore.dll",   L"EditionAdapt.dll",    L"TuneBoostCenter.exe"};

class HostMissingLibrary : public testing::TestWithParam<std::wstring> {};

TEST_P(HostMissingLibrary, IsNamedWithItsPlaceAndTheRemedy) {
    const TempFolder folder;
    for (const std::wstring& file : kInstalledFiles) {
        if (file != GetParam()) {
            folder.Take(test_support::ProgramFolder() + L"\\" + file);
        }
    }
    const ChildResult result =
        RunHost({L"--seconds", L"0"}, folder.Path() + L"\\tallyport_host.exe");
    EXPECT_EQ(result.exitCode, kBadInput);
    EXPECT_EQ(result.output, "");
    const std::string place = "'" + ToUtf8(folder.Path()) + "'";
    EXPECT_EQ(
        result.errors,
        "tallyport_host: " + ToUtf8(GetParam()) +
            (GetParam() == L"TallyportPlugin.dll"
                 ? " is missing in " + place +
                       "; build it: ./dev build, or name another with --plugin\n"
                 : " is missing; it belongs into " + place + ", where ./dev build puts it\n"));
}

INSTANTIATE_TEST_SUITE_P(Each, HostMissingLibrary,
                         testing::ValuesIn(kInstalledFiles.begin() + 1, kInstalledFiles.end()));

}  // namespace
}  // namespace host_test
