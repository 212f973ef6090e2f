// Runs of the built host with the built plug-in on a described machine, and what scripts do there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "host/sent_event.h"
#include "library/host/host_program.h"
#include "support/temp_folder.h"

namespace host_test {
namespace {

using nlohmann::json;
using test_support::ChildResult;
using test_support::TempFolder;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// A machine of which the tests know every answer.
constexpr char kMachine[] = R"({
    "description": "Known in every detail",
    "devices": [{
        "id": "USB\\VID_0001&PID_0002\\3",
        "present": false,
        "interfaces": [{"class": "usb", "path": "\\\\?\\usb#vid_0001&pid_0002#3"}]
    }],
    "logons": {
        "consoleSession": 1,
        "sessions": [{"id": 1, "user": "DESK\\anna"}],
        "accounts": {"DESK\\anna": "S-1-5-21-1-2-3-1001"}
    },
    "firmware": {"boardProduct": "Board 7", "oemProduct": "Oem 8", "biosVersion": "Bios 9"},
    "suite": {
        "consent": "1",
        "features": {"ReportDeviceList": 2},
        "ecLog": {"data": "0a ff 10"}
    },
    "registry": {"popUpBlocking": 0, "powerfulMode": 1},
    "fileVersions": {
        "C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe": {
            "product": "1.2.3.4", "file": "5.6.7.8"
        }
    }
})";

class HostMachineRun : public testing::Test {
protected:
    std::wstring File(const wchar_t* name) const { return folder.Path() + L"\\" + name; }

    /// Runs on the known machine, changed as wanted.
    ChildResult RunOnMachine(const std::string& script,
                             const std::function<void(json&)>& change = {}) const {
        json machine = json::parse(kMachine);
        if (change) {
            change(machine);
        }
        WriteFile(File(L"machine.json"), machine.dump());
        WriteFile(File(L"script.jsonl"), script);
        return RunHost({L"--seconds", L"1", L"--machine", File(L"machine.json"), L"--script",
                        File(L"script.jsonl"), L"--events", File(L"events.ndjson")});
    }

    TempFolder folder;
};

TEST_F(HostMachineRun, RecordsEveryEventInOrder) {
    const ChildResult result = RunOnMachine("");
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    const std::vector<json> events = ReadRecord(File(L"events.ndjson"));
    ASSERT_THAT(IdsOf(events), ElementsAre(host::kBiosInfoEventId, host::kPopUpBlockInfoEventId));
    EXPECT_EQ(events[0]["fields"], json::parse(R"([{"key": "Product", "value": "Board 7"},
                              {"key": "String7", "value": "Oem 8"},
                              {"key": "Version", "value": "Bios 9"}])"));
    EXPECT_EQ(events[1]["fields"], json::parse(R"([{"key": "mode", "value": "OPEN_MODE"},
                                                   {"key": "status", "value": "1"},
                                                   {"key": "version", "value": "1.2.3.4"}])"));
    EXPECT_THAT(result.output, HasSubstr("Known in every detail"));
}

TEST_F(HostMachineRun, FiresFirmwareEventsFromAScript) {
    const ChildResult result =
        RunOnMachine(R"({"at": "0s", "do": "fire_firmware_event", "code": 675}
{"at": "0s", "do": "fire_firmware_event", "code": 674}
{"at": "0s", "do": "fire_firmware_event", "code": 676})");
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    const std::vector<json> events = ReadRecord(File(L"events.ndjson"));
    ASSERT_THAT(IdsOf(events), ElementsAre(host::kBiosInfoEventId, host::kPopUpBlockInfoEventId,
                                           host::kEcLogEventId));
    const json& fields = events[2]["fields"];
    ASSERT_EQ(fields.size(), 1U);
    EXPECT_EQ(fields[0]["key"], "ECLog");
    const auto log = fields[0]["value"].get<std::string>();
    EXPECT_EQ(log.size(), 1012U);
    EXPECT_THAT(log, StartsWith("0x0a0xff0x100x00"));
    EXPECT_THAT(LinesBelow(result.output, "event", "992614512 embedded controller's log"),
                ElementsAre("ECLog: 253 bytes as 1012 characters", StartsWith("  0  0a ff 10 00"),
                            "and 237 zero bytes"));
    EXPECT_EQ(ShownLines(result.output, "script").size(), 3U);
}

TEST_F(HostMachineRun, LetsTheFirmwareFailAsTheMachineSays) {
    const ChildResult result =
        RunOnMachine(R"({"at": "0s", "do": "fire_firmware_event", "code": 675})",
                     [](json& machine) { machine["suite"]["ecLog"]["status"] = 2; });
    EXPECT_THAT(ShownLines(result.output, "log!"),
                ElementsAre("ReadECLog error ret=0,status=2(ReportECLogInfo)"));
    EXPECT_THAT(IdsOf(ReadRecord(File(L"events.ndjson"))),
                testing::Not(Contains(host::kEcLogEventId)));
}

TEST_F(HostMachineRun, SaysSoWhenNobodyHearsAFirmwareEvent) {
    const ChildResult result =
        RunOnMachine(R"({"at": "0s", "do": "fire_firmware_event", "code": 675})",
                     [](json& machine) { machine["suite"]["firmwareStartResult"] = 5; });
    EXPECT_THAT(ShownLines(result.output, "note"),
                ElementsAre("Nobody is subscribed to firmware events"));
}

TEST_F(HostMachineRun, SendsNoBiosEventOfAMachineWithoutFirmwareTable) {
    const ChildResult result =
        RunOnMachine("", [](json& machine) { machine["firmware"] = nullptr; });
    EXPECT_THAT(ShownLines(result.output, "log!"),
                ElementsAre("SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)"));
    EXPECT_THAT(IdsOf(ReadRecord(File(L"events.ndjson"))),
                ElementsAre(host::kPopUpBlockInfoEventId));
}

TEST_F(HostMachineRun, ChangesSwitchesBetweenRestarts) {
    const ChildResult result = RunOnMachine(
        R"({"at": "0s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 0}
{"at": "0s", "do": "restart_plugin"}
{"at": "0s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": null}
{"at": "0s", "do": "restart_plugin"})");
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    const std::vector<json> events = ReadRecord(File(L"events.ndjson"));
    // The BIOS report was made and its time survives the restarts; without the first switch there
    // is no report at all.
    ASSERT_THAT(IdsOf(events), ElementsAre(host::kBiosInfoEventId, host::kPopUpBlockInfoEventId,
                                           host::kPopUpBlockInfoEventId));
    EXPECT_EQ(events[1]["fields"][1]["value"], "1");
    EXPECT_EQ(events[2]["fields"][1]["value"], "0");
    EXPECT_THAT(ShownLines(result.output, "log!"),
                ElementsAre("Get register blocking switch fail: "
                            "2(ReportPopUpBlockInfo::OnRecvReportInfo)"));
    const auto steps = ShownLines(result.output, "step");
    EXPECT_EQ(std::count(steps.begin(), steps.end(), "Unload TallyportPlugin.dll"), 3);
}

TEST_F(HostMachineRun, AsksTheMachinesSuiteForFeatures) {
    // 2 is not the value that allows device lists.
    const ChildResult without =
        RunOnMachine(R"({"at": "0s", "do": "set_feature", "name": "ReportDeviceList", "value": 3}
{"at": "0s", "do": "restart_plugin"})");
    const std::vector<std::string> log = ShownLines(without.output, "log");
    EXPECT_EQ(std::count(log.begin(), log.end(),
                         "machine type not support(DeviceReporter::ReportDeviceInfo::Init)"),
              1);
    EXPECT_EQ(std::count(log.begin(), log.end(),
                         "Register timer:1(TimerReportMgr::RegisterReportCallback)"),
              1);
}

TEST_F(HostMachineRun, PlugsDescribedDevices) {
    const ChildResult result = RunOnMachine(
        R"({"at": "0s", "do": "plug_device", "device": "USB\\VID_0001&PID_0002\\3"}
{"at": "0s", "do": "unplug_device", "device": "USB\\VID_0001&PID_0002\\3"})");
    EXPECT_EQ(result.exitCode, 0U) << result.errors;
    EXPECT_THAT(ShownLines(result.output, "script"),
                ElementsAre(StartsWith("USB\\VID_0001&PID_0002\\3 is plugged in ("),
                            StartsWith("USB\\VID_0001&PID_0002\\3 is unplugged (")));
}

TEST_F(HostMachineRun, SaysHowManyHappeningsItDoesNotReach) {
    const ChildResult result = RunOnMachine(R"({"at": "1s", "do": "stop"}
{"at": "1d", "do": "stop"}
{"at": "0s", "do": "set_consent", "answer": "0"})");
    EXPECT_THAT(ShownLines(result.output, "note"),
                ElementsAre("2 of 3 happenings come after the end of the run"));
}

TEST_F(HostMachineRun, TellsOfListsThatWereSentBeforeAndOfAMonitorThatIsNotStartedForThem) {
    const auto notesWith = [&](int count) {
        const ChildResult result = RunOnMachine("", [&](json& machine) {
            machine["suite"]["features"]["ReportDeviceList"] = 3;
            machine["registry"]["reportDevicesCount"] = count;
        });
        return ShownLines(result.output, "note");
    };
    EXPECT_THAT(notesWith(0), testing::IsEmpty());
    EXPECT_THAT(notesWith(9), ElementsAre("9 of 10 device lists were sent before this run"));
    EXPECT_THAT(notesWith(10),
                ElementsAre("10 of 10 device lists were sent before this run",
                            "It started no device monitor: 10 of 10 device lists sent"));
}

TEST_F(HostMachineRun, ClosesWithASummary) {
    const ChildResult result = RunOnMachine("");
    const std::vector<std::string> lines = LinesOf(result.output);
    const auto heading = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.compare(0, 6, "event ") == 0;
    });
    ASSERT_LE(3, lines.end() - heading);
    EXPECT_THAT(heading[1],
                testing::MatchesRegex("992614500  BIOS information  +1  +39  0d 00:00:.. +0d .*"));
    EXPECT_THAT(heading[2],
                testing::MatchesRegex("992614518  optimisation component  +1  +34  0d .*"));
    EXPECT_THAT(lines.back(), StartsWith("Every event is in "));
}

}  // namespace
}  // namespace host_test
