// Runs of the built host with the built plug-in on this computer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/sent_event.h"
#include "host/wine.h"
#include "library/host/host_program.h"
#include "platform/board_info.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using nlohmann::json;
using test_support::ChildResult;
using test_support::TempFolder;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Texts as the host shows them.
std::string Shown(const std::wstring& text) {
    return text.empty() ? "(empty)" : std::string(text.begin(), text.end());
}

class HostRun : public testing::Test {
protected:
    std::wstring File(const wchar_t* name) const { return folder.Path() + L"\\" + name; }

    TempFolder folder;
};

TEST_F(HostRun, TakesThePluginThroughAllStepsInOrder) {
    const ChildResult result = RunHost({L"--seconds", L"1"});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(ShownLines(result.output, "step"),
                ElementsAre("Loaded ZedPluginsManager.dll and the other libraries of the suite",
                            "Load TallyportPlugin.dll",
                            "It registered itself as 6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8",
                            "Create it through its factory", "Initialize", "Start", "Started",
                            "Stop", "Stopped", "Uninitialize", "Unload TallyportPlugin.dll"));
    EXPECT_THAT(ShownLines(result.output, "log"),
                Contains("Register timer:12(TimerReportMgr::RegisterReportCallback)"));
    EXPECT_THAT(ShownLines(result.output, "wait"),
                ElementsAre(StartsWith("the timer runs next at 0d ")));
}

TEST_F(HostRun, ShowsThisMachinesBiosTexts) {
    const ChildResult result = RunHost({L"--seconds", L"0", L"--fresh"});
    SmBiosHelper* const smBios = SmBiosHelper::GetInstance();
    ASSERT_NE(smBios, nullptr);
    EXPECT_THAT(LinesBelow(result.output, "event", "992614500 BIOS information"),
                ElementsAre("Product  " + Shown(smBios->GetBoardProductName()),
                            "String7  " + Shown(smBios->GetOemProductName()),
                            "Version  " + Shown(smBios->GetBIOSSysVersion())));
}

TEST_F(HostRun, BeginsAfreshUnlessStateIsKept) {
    const auto sendsBiosEvent = [](const wchar_t* option) {
        const ChildResult result = RunHost({L"--seconds", L"0", option});
        EXPECT_EQ(result.exitCode, 0U);
        return result.output.find("992614500") != std::string::npos;
    };
    EXPECT_TRUE(sendsBiosEvent(L"--fresh"));
    EXPECT_FALSE(sendsBiosEvent(L"--keep-state"));
    EXPECT_TRUE(sendsBiosEvent(L"--fresh"));
}

TEST_F(HostRun, ReportsTheProductVersionOfTheInstalledComponentUnderWine) {
    if (!host::WineVersion()) {
        GTEST_SKIP() << "Windows is left as it is, with or without the component";
    }
    // Switched off by the script of an earlier run.
    WriteFile(File(L"off.jsonl"),
              R"({"at": "0s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": 0})"
              "\n"
              R"({"at": "0s", "do": "restart_plugin"})");
    const ChildResult first = RunHost(
        {L"--seconds", L"1", L"--script", File(L"off.jsonl"), L"--events", File(L"events.ndjson")});
    EXPECT_EQ(first.exitCode, 0U) << first.errors;
    std::vector<std::string> statuses;
    for (const json& event : ReadRecord(File(L"events.ndjson"))) {
        if (event["id"] == host::kPopUpBlockInfoEventId) {
            statuses.push_back(event["fields"][1]["value"]);
        }
    }
    EXPECT_THAT(statuses, ElementsAre("1", "0"));

    const ChildResult second = RunHost({L"--seconds", L"0"});
    EXPECT_THAT(LinesBelow(second.output, "event", "992614518 optimisation component"),
                ElementsAre("mode     OPEN_MODE", "status   1", "version  12.0.3.105"));
}

TEST_F(HostRun, WritesEveryLogLine) {
    const ChildResult result = RunHost({L"--seconds", L"1", L"--log", File(L"log.txt")});
    EXPECT_EQ(result.exitCode, 0U);
    const std::vector<std::string> shown = ShownLines(result.output, "log");
    const std::vector<std::string> written = LinesOf(ReadFile(File(L"log.txt")));
    ASSERT_EQ(written.size(), shown.size());
    ASSERT_THAT(shown, testing::Not(IsEmpty()));
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_THAT(written[i], testing::EndsWith("[3] " + shown[i]));
    }
}

TEST_F(HostRun, ReplacesTheFilesOfAnEarlierRun) {
    WriteFile(File(L"events.ndjson"), "old\n");
    WriteFile(File(L"log.txt"), std::string(100000, 'x'));
    const ChildResult result = RunHost(
        {L"--seconds", L"0", L"--events", File(L"events.ndjson"), L"--log", File(L"log.txt")});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_THAT(ReadFile(File(L"events.ndjson")), StartsWith("{\"time\":"));
    EXPECT_EQ(ReadFile(File(L"log.txt")).find('x'), std::string::npos);
}

TEST_F(HostRun, TakesFileNamesInAnyAlphabet) {
    const std::wstring path = File(L"\u00e4\u5b57.ndjson");
    const ChildResult result = RunHost({L"--seconds", L"0", L"--fresh", L"--events", path});
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(IdsOf(ReadRecord(path)), Contains(host::kBiosInfoEventId));
    EXPECT_THAT(result.output, HasSubstr("\xC3\xA4\xE5\xAD\x97.ndjson"));
}

TEST_F(HostRun, EndsEarlyWhenTheScriptSaysSo) {
    WriteFile(File(L"script.jsonl"), R"({"at": "1s", "do": "stop"})");
    const ChildResult result = RunHost({L"--days", L"1", L"--script", File(L"script.jsonl")});
    EXPECT_EQ(result.exitCode, 0U);
    EXPECT_EQ(ShownLines(result.output, "step").back(), "Unload TallyportPlugin.dll");
    EXPECT_THAT(result.output, HasSubstr("Ran 0d 00:00:0"));
}

TEST_F(HostRun, OfSomeLengthShowsALogLineOnceBetweenWaitLines) {
    WriteFile(File(L"script.jsonl"), R"({"at": "0s", "do": "restart_plugin"}
{"at": "0s", "do": "restart_plugin"}
{"at": "1s", "do": "stop"})");
    const ChildResult result =
        RunHost({L"--hours", L"2", L"--script", File(L"script.jsonl"), L"--log", File(L"log.txt")});
    const std::string line = "Register timer:12(TimerReportMgr::RegisterReportCallback)";
    const std::vector<std::string> shown = ShownLines(result.output, "log");
    const std::vector<std::string> written = LinesOf(ReadFile(File(L"log.txt")));
    // The one wait line comes after the first start.
    EXPECT_EQ(ShownLines(result.output, "wait").size(), 1U);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), line), 2);
    EXPECT_EQ(
        std::count_if(written.begin(), written.end(),
                      [&](const std::string& one) { return one.find(line) != std::string::npos; }),
        3);
}

TEST_F(HostRun, OfSomeLengthShowsTheFieldsOfAnEventOnce) {
    WriteFile(File(L"script.jsonl"), R"({"at": "0s", "do": "restart_plugin"}
{"at": "1s", "do": "stop"})");
    const ChildResult result =
        RunHost({L"--hours", L"2", L"--script", File(L"script.jsonl"), L"--log", File(L"log.txt")});
    const std::vector<std::string> events = ShownLines(result.output, "event");
    ASSERT_THAT(events, ElementsAre(StartsWith("992614500 "),
                                    testing::MatchesRegex("992614518 .*, timer hour 0"),
                                    testing::MatchesRegex("992614518 .*, timer hour 0, the same as "
                                                          "before")));
    const std::vector<std::string> lines = LinesOf(result.output);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) {
                                return line.find("  mode     OPEN_MODE") != std::string::npos;
                            }),
              1);
}

TEST_F(HostRun, SaysHowManyLogLinesItDoesNotShow) {
    WriteFile(File(L"script.jsonl"), R"({"at": "0s", "do": "restart_plugin"}
{"at": "1s", "do": "stop"})");
    const ChildResult result =
        RunHost({L"--hours", L"2", L"--script", File(L"script.jsonl"), L"--log", File(L"log.txt")});
    const std::size_t shown =
        ShownLines(result.output, "log").size() + ShownLines(result.output, "log!").size();
    const std::size_t hidden = LinesOf(ReadFile(File(L"log.txt"))).size() - shown;
    EXPECT_GE(hidden, 1U);
    EXPECT_THAT(
        LinesOf(result.output).back(),
        testing::EndsWith(", with " + std::to_string(hidden) + " that are not shown above"));
}

TEST_F(HostRun, OfSomeLengthShowsEveryLineWhenAsked) {
    WriteFile(File(L"script.jsonl"), R"({"at": "0s", "do": "restart_plugin"}
{"at": "1s", "do": "stop"})");
    const ChildResult result = RunHost({L"--hours", L"2", L"--every-line", L"--script",
                                        File(L"script.jsonl"), L"--log", File(L"log.txt")});
    EXPECT_EQ(ShownLines(result.output, "log").size() + ShownLines(result.output, "log!").size(),
              LinesOf(ReadFile(File(L"log.txt"))).size());
    EXPECT_THAT(ShownLines(result.output, "log"),
                Contains(StartsWith("BigdataTimerReportFrame loop(")));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("the same as before")));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("not shown")));
}

TEST_F(HostRun, ShowsOnlyTheSummaryWhenAskedToBeQuiet) {
    const ChildResult result = RunHost({L"--seconds", L"0", L"--quiet"});
    EXPECT_EQ(result.exitCode, 0U);
    const std::vector<std::string> lines = LinesOf(result.output);
    ASSERT_LE(4U, lines.size());
    EXPECT_EQ(lines[0], "");
    EXPECT_THAT(lines[1], StartsWith("Ran 0d 00:00:0"));
    EXPECT_EQ(lines[2], "");
    EXPECT_THAT(lines[3], StartsWith("event "));
    EXPECT_THAT(ShownLines(result.output, "step"), IsEmpty());
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

}  // namespace
}  // namespace host_test
