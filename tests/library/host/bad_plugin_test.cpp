// Plug-ins that do not behave.
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

std::string StepFailed(const std::string& step) {
    return "the plug-in's " + step +
           " failed; what it logged before tells more, and --log FILE keeps it";
}

std::string StepThrew(const std::string& step, const std::string& what = ": no luck") {
    return "the plug-in's " + step +
           " ended with an exception, which would end the suite's process" + what +
           "; what it logged before tells more, and --log FILE keeps it";
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
                                  "manager: put ZedPluginsManager.dll beside the host"},
                    BadPlugin{L"silent_plugin.dll",
                              "'{path}' registered no plug-in with the manager when it was loaded; "
                              "is it a plug-in?"},
                    BadPlugin{L"unwilling_registration.dll",
                              "'{path}' registered no factory, so it cannot be created; set one in "
                              "its registration"},
                    BadPlugin{L"unwilling_factory.dll", StepFailed("factory")},
                    BadPlugin{L"unwilling_initialize.dll", StepFailed("Initialize")},
                    BadPlugin{L"unwilling_start.dll", StepFailed("Start")},
                    BadPlugin{L"unwilling_stop.dll", StepFailed("Stop")},
                    BadPlugin{L"unwilling_uninitialize.dll", StepFailed("Uninitialize")},
                    BadPlugin{L"throwing_factory.dll", StepThrew("factory")},
                    BadPlugin{L"throwing_initialize.dll", StepThrew("Initialize")},
                    BadPlugin{L"throwing_start.dll", StepThrew("Start")},
                    BadPlugin{L"throwing_stop.dll", StepThrew("Stop")},
                    BadPlugin{L"throwing_uninitialize.dll", StepThrew("Uninitialize")},
                    BadPlugin{L"throwing_number.dll", StepThrew("Start", "")}));

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

TEST(HostPlugin, HasToGiveBackWhatASimulatedSystemHandsOut) {
    const TempFolder folder;
    WriteFile(folder.Path() + L"\\machine.json", "{}");
    const ChildResult result =
        RunHost({L"--seconds", L"0", L"--plugin", PluginFolder() + L"\\keeping_plugin.dll",
                 L"--machine", folder.Path() + L"\\machine.json"});
    EXPECT_EQ(result.exitCode, kRunFailed);
    EXPECT_THAT(result.errors,
                testing::MatchesRegex("tallyport_host: the plug-in did not give back what the "
                                      "system handed out: device set 0x\\w+ .* was not "
                                      "given back; it has to, on every way out\n"));
}

TEST(HostPlugin, ThatLacksALibraryIsToldSo) {
    const TempFolder folder;
    const std::wstring path = folder.Take(PluginFolder() + L"\\needing_plugin.dll");
    const ChildResult result = RunHost({L"--plugin", path});
    EXPECT_EQ(result.exitCode, kRunFailed);
    EXPECT_EQ(result.errors, "tallyport_host: cannot load the plug-in '" + ToUtf8(path) +
                                 "': " + Win32ErrorText(ERROR_MOD_NOT_FOUND) +
                                 "; a library that it needs is missing: put it beside it\n");
}

}  // namespace
}  // namespace host_test
