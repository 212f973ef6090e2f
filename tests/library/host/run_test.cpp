// Runs of the built host with the built plug-in on this computer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "library/host/host_run.h"
#include "platform/board_info.h"

namespace host_test {
namespace {

using test_support::ChildResult;
using test_support::LinesBelow;
using test_support::LinesOf;
using test_support::ReadFile;
using test_support::RunHost;
using test_support::ShownLines;
using test_support::WriteFile;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(HostRun, TakesThePluginThroughAllStepsInOrderAndReplacesTheFilesOfAnEarlierRun) {
    WriteFile(File(L"events.ndjson"), "old\n");
    WriteFile(File(L"log.txt"), std::string(100000, 'x'));
    const ChildResult result = Run({L"--seconds", L"1", L"--fresh"});
    EXPECT_THAT(ShownLines(result.output, "step"),
                ElementsAre("Loaded ZedPluginsManager.dll and the other libraries of the suite",
                            "Load TallyportPlugin.dll",
                            "It registered itself as 6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8",
                            "Create it through its factory", "Initialize", "Start", "Started",
                            "Stop", "Stopped", "Uninitialize", "Unload TallyportPlugin.dll"));
    EXPECT_THAT(ShownLines(result.output, "wait"),
                ElementsAre(StartsWith("the timer runs next at 0d ")));
    const std::vector<std::string> shown = ShownLines(result.output, "log");
    EXPECT_THAT(shown, Contains("Register timer:12(TimerReportMgr::RegisterReportCallback)"));
    const std::vector<std::string> written = LoggedLines();
    ASSERT_EQ(written.size(), shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_THAT(written[i], testing::EndsWith("[3] " + shown[i]));
    }
    EXPECT_THAT(Events(), Contains(StartsWith("992614500")));
}

TEST_F(HostRun, BeginsAfreshUnlessStateIsKeptAndShowsThisMachinesBiosTexts) {
    const auto bios = [](const wchar_t* option) {
        const ChildResult result = RunHost({L"--seconds", L"0", option});
        EXPECT_EQ(result.exitCode, 0U);
        return LinesBelow(result.output, "event", "992614500 BIOS information");
    };
    SmBiosHelper* const smBios = SmBiosHelper::GetInstance();
    ASSERT_NE(smBios, nullptr);
    const auto shown = [](const std::wstring& text) {
        return text.empty() ? "(empty)" : std::string(text.begin(), text.end());
    };
    const auto texts = ElementsAre("Product  " + shown(smBios->GetBoardProductName()),
                                   "String7  " + shown(smBios->GetOemProductName()),
                                   "Version  " + shown(smBios->GetBIOSSysVersion()));
    EXPECT_THAT(bios(L"--fresh"), texts);
    EXPECT_THAT(bios(L"--keep-state"), IsEmpty());
    EXPECT_THAT(bios(L"--fresh"), texts);
}

TEST_F(HostRun, ReportsTheProductVersionOfTheInstalledComponentUnderWine) {
    if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
        GTEST_SKIP() << "Windows is left as it is, with or without the component";
    }
    // The script of an earlier run leaves the switch off.
    Run({L"--seconds", L"1"},
        R"({"at": "0s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": 0}
{"at": "0s", "do": "restart_plugin"})");
    EXPECT_THAT(Events(), Contains("992614518: OPEN_MODE, 0, 12.0.3.105"));
    Run({L"--seconds", L"0"});
    EXPECT_THAT(Events(), Contains("992614518: OPEN_MODE, 1, 12.0.3.105"));
}

TEST_F(HostRun, TakesFileNamesInAnyAlphabet) {
    const std::wstring path = File(L"\u00e4\u5b57.ndjson");
    const ChildResult result = RunHost({L"--seconds", L"0", L"--fresh", L"--events", path});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(ReadFile(path), HasSubstr("992614500"));
    EXPECT_THAT(result.output, HasSubstr("\xC3\xA4\xE5\xAD\x97.ndjson"));
}

constexpr char kTwoRestarts[] = R"({"at": "0s", "do": "restart_plugin"}
{"at": "0s", "do": "restart_plugin"}
{"at": "1s", "do": "stop"})";

TEST_F(HostRun, OfSomeLengthLeavesRepeatsOutAndEndsEarlyWhenTheScriptSaysSo) {
    const ChildResult result = Run({L"--hours", L"2"}, kTwoRestarts);
    EXPECT_THAT(result.output, HasSubstr("Ran 0d 00:"));
    const std::string line = "Register timer:12(TimerReportMgr::RegisterReportCallback)";
    const std::vector<std::string> shown = ShownLines(result.output, "log");
    const std::vector<std::string> written = LoggedLines();
    // The one wait line comes after the first start.
    EXPECT_EQ(ShownLines(result.output, "wait").size(), 1U);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), line), 2);
    EXPECT_EQ(std::count_if(written.begin(), written.end(),
                            [&](const auto& one) { return one.find(line) != std::string::npos; }),
              3);
    const std::string repeat = "992614518 .*, timer hour 0, the same as before";
    EXPECT_THAT(
        ShownLines(result.output, "event"),
        ElementsAre(StartsWith("992614500 "), testing::MatchesRegex("992614518 .*, timer hour 0"),
                    testing::MatchesRegex(repeat), testing::MatchesRegex(repeat)));
    const std::size_t hidden =
        written.size() - shown.size() - ShownLines(result.output, "log!").size();
    EXPECT_THAT(
        LinesOf(result.output).back(),
        testing::EndsWith(", with " + std::to_string(hidden) + " that are not shown above"));
}

TEST_F(HostRun, OfSomeLengthShowsEveryLineWhenAsked) {
    const ChildResult result = Run({L"--hours", L"2", L"--every-line"}, kTwoRestarts);
    EXPECT_EQ(ShownLines(result.output, "log").size() + ShownLines(result.output, "log!").size(),
              LoggedLines().size());
    EXPECT_THAT(ShownLines(result.output, "log"),
                Contains(StartsWith("BigdataTimerReportFrame loop(")));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("the same as before")));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("not shown")));
}

TEST_F(HostRun, ShowsOnlyTheSummaryWhenAskedToBeQuiet) {
    const ChildResult result = RunHost({L"--seconds", L"0", L"--quiet"});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_THAT(LinesOf(result.output), testing::Not(Contains(HasSubstr("  step  "))));
    EXPECT_THAT(result.output, StartsWith("\nRan 0d 00:"));
    EXPECT_THAT(result.output, HasSubstr("\n\nevent "));
}

TEST_F(HostRun, ExplainsItsOptions) {
    const ChildResult result = RunHost({L"--help"});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    for (const char* option : {"--days N", "--hours N", "--seconds N", "--plugin FILE",
                               "--machine FILE", "--script FILE", "--events FILE", "--log FILE",
                               "--quiet", "--every-line", "--keep-state", "--fresh", "--help"}) {
        EXPECT_THAT(result.output, HasSubstr(option));
    }
}

TEST_F(HostRun, TakesAPluginDownAsFarAsItCame) {
    const ChildResult result =
        RunHost({L"--plugin",
                 test_support::ProgramFolder() + L"\\host_test_plugins\\refusing_in_Start.dll"});
    EXPECT_THAT(ShownLines(result.output, "step"),
                ElementsAre("Loaded ZedPluginsManager.dll and the other libraries of the suite",
                            "Load refusing_in_Start.dll", "It registered itself as misbehaving",
                            "Create it through its factory", "Initialize", "Start", "Uninitialize",
                            "Unload refusing_in_Start.dll"));
}

}  // namespace
}  // namespace host_test
