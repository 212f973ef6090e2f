// A plug-in whose thread outlives Stop. The host waits for it by counting looks, which are short on
// the fast clock.
#include <gtest/gtest.h>

#include "host/host_error.h"
#include "library/host/host_program.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using test_support::ChildResult;

/// Of the fast clock; a quarter of an hour at most.
constexpr std::chrono::hours kLimit{24 * 365};

ChildResult RunStayingPlugin(std::vector<std::wstring> arguments) {
    arguments.insert(arguments.end(),
                     {L"--seconds", L"0", L"--plugin", PluginFolder() + L"\\staying_plugin.dll"});
    return RunHost(arguments, {}, kLimit);
}

TEST(StayingPlugin, IsToldWhenItStaysLoaded) {
    const ChildResult result = RunStayingPlugin({});
    EXPECT_EQ(result.exitCode, static_cast<DWORD>(host::ExitCode::RunFailed));
    EXPECT_EQ(result.errors,
              "tallyport_host: the plug-in stays loaded after Stop: a thread of it is still "
              "running, or somebody kept a reference to it; Stop has to see to both\n");
}

TEST(StayingPlugin, IsToldThatItsThreadRunsOnASimulatedSystem) {
    const test_support::TempFolder folder;
    WriteFile(folder.Path() + L"\\machine.json", "{}");
    const ChildResult result = RunStayingPlugin({L"--machine", folder.Path() + L"\\machine.json"});
    EXPECT_EQ(result.exitCode, static_cast<DWORD>(host::ExitCode::RunFailed));
    EXPECT_EQ(result.errors,
              "tallyport_host: a thread of the plug-in is still running after Stop, which has to "
              "see to its end\n");
}

}  // namespace
}  // namespace host_test
