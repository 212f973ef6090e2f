// Runs of the built host with the built plug-in on a described machine, and what scripts do there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "library/host/host_run.h"

namespace host_test {
namespace {

using nlohmann::json;
using test_support::ChildResult;
using test_support::LinesBelow;
using test_support::LinesOf;
using test_support::RunHost;
using test_support::ShownLines;
using test_support::WriteFile;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// A machine of which the tests know every answer.
constexpr char kMachine[] = R"({
    "description": "Known in every detail",
    "devices": [
        {"id": "USB\\VID_0001&PID_0002\\3", "present": false,
         "interfaces": [{"class": "usb", "path": "\\\\?\\usb#vid_0001&pid_0002#3"}]},
        {"id": "USB\\DEAF"}
    ],
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
constexpr char kBiosEvent[] = "992614500: Board 7, Oem 8, Bios 9";
constexpr char kSwitchesEvent[] = "992614518: OPEN_MODE, 1, 1.2.3.4";
constexpr char kFirmwareEvent[] = R"({"at": "0s", "do": "fire_firmware_event", "code": 675})";

class HostMachineRun : public HostRun {
protected:
    /// Runs on the known machine, changed as wanted.
    ChildResult RunOnMachine(const std::string& script,
                             const std::function<void(json&)>& change = {}) const {
        json machine = json::parse(kMachine);
        if (change) {
            change(machine);
        }
        WriteFile(File(L"machine.json"), machine.dump());
        return Run({L"--seconds", L"1", L"--machine", File(L"machine.json")}, script);
    }
};

TEST_F(HostMachineRun, RecordsEveryEventInOrderAndClosesWithASummary) {
    const ChildResult result =
        RunOnMachine(std::string(kFirmwareEvent) + "\n" +
                     R"({"at": "0s", "do": "fire_firmware_event", "code": 674}
{"at": "0s", "do": "plug_device", "device": "USB\\VID_0001&PID_0002\\3"}
{"at": "0s", "do": "unplug_device", "device": "USB\\VID_0001&PID_0002\\3"})");
    EXPECT_THAT(Events(),
                ElementsAre(kBiosEvent, kSwitchesEvent, StartsWith("992614512: 0x0a0xff0x100x00")));
    EXPECT_THAT(LinesBelow(result.output, "event", "992614512 embedded controller's log"),
                ElementsAre("ECLog: 253 bytes as 1012 characters", StartsWith("  0  0a ff 10 00"),
                            "and 237 zero bytes"));
    EXPECT_THAT(ShownLines(result.output, "script"),
                ElementsAre(StartsWith("the firmware raises event 675 ("),
                            StartsWith("the firmware raises event 674 ("),
                            StartsWith("USB\\VID_0001&PID_0002\\3 is plugged in ("),
                            StartsWith("USB\\VID_0001&PID_0002\\3 is unplugged (")));
    EXPECT_THAT(result.output, HasSubstr("Known in every detail"));
    const std::vector<std::string> lines = LinesOf(result.output);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_THAT(lines[lines.size() - 2], StartsWith("Every event is in "));
    EXPECT_THAT(lines.back(), StartsWith("Every log line is in "));
}

TEST_F(HostMachineRun, LetsTheFirmwareFailAsTheMachineSays) {
    ChildResult result = RunOnMachine(
        kFirmwareEvent, [](json& machine) { machine["suite"]["ecLog"]["status"] = 2; });
    EXPECT_THAT(ShownLines(result.output, "log!"),
                ElementsAre("ReadECLog error ret=0,status=2(ReportECLogInfo)"));
    EXPECT_THAT(Events(), ElementsAre(kBiosEvent, kSwitchesEvent));

    result = RunOnMachine(kFirmwareEvent, [](json& machine) {
        machine["suite"]["firmwareStartResult"] = 5;
        machine["firmware"] = nullptr;
    });
    EXPECT_THAT(ShownLines(result.output, "note"),
                ElementsAre("Nobody is subscribed to firmware events"));
    EXPECT_THAT(ShownLines(result.output, "log!"),
                Contains("SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)"));
    EXPECT_THAT(Events(), ElementsAre(kSwitchesEvent));
}

TEST_F(HostMachineRun, ChangesSwitchesAndFeaturesBetweenRestarts) {
    const ChildResult result = RunOnMachine(
        R"({"at": "0s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 0}
{"at": "0s", "do": "set_feature", "name": "ReportDeviceList", "value": 3}
{"at": "0s", "do": "restart_plugin"}
{"at": "0s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": null}
{"at": "0s", "do": "restart_plugin"})");
    // The BIOS report was made and its time survives the restarts; without the first switch there
    // is no report at all.
    EXPECT_THAT(Events(),
                ElementsAre(kBiosEvent, kSwitchesEvent, "992614518: OPEN_MODE, 0, 1.2.3.4"));
    EXPECT_THAT(ShownLines(result.output, "log!"),
                ElementsAre("Get register blocking switch fail: "
                            "2(ReportPopUpBlockInfo::OnRecvReportInfo)"));
    const auto steps = ShownLines(result.output, "step");
    EXPECT_EQ(std::count(steps.begin(), steps.end(), "Unload TallyportPlugin.dll"), 3);
    // 2 is not the value that allows device lists.
    const std::vector<std::string> log = ShownLines(result.output, "log");
    EXPECT_EQ(std::count(log.begin(), log.end(),
                         "machine type not support(DeviceReporter::ReportDeviceInfo::Init)"),
              1);
    EXPECT_EQ(std::count(log.begin(), log.end(),
                         "Register timer:1(TimerReportMgr::RegisterReportCallback)"),
              2);
}

TEST_F(HostMachineRun, NotesHappeningsOutOfReachAndListsThatWereSentBefore) {
    const ChildResult result = RunOnMachine(
        R"({"at": "1s", "do": "stop"}
{"at": "1d", "do": "stop"}
{"at": "0s", "do": "set_consent", "answer": "0"})",
        [](json& machine) {
            machine["suite"]["features"]["ReportDeviceList"] = 3;
            machine["registry"]["reportDevicesCount"] = 10;
        });
    EXPECT_THAT(ShownLines(result.output, "note"),
                ElementsAre("2 of 3 happenings come after the end of the run",
                            "10 of 10 device lists were sent before this run",
                            "It started no device monitor: 10 of 10 device lists sent"));
}

TEST_F(HostMachineRun, RefusesWhatTheMachineLacks) {
    const auto refused = [&](const std::string& happening, const char* machine) {
        WriteFile(File(L"script.jsonl"), happening);
        WriteFile(File(L"machine.json"), machine);
        const ChildResult result =
            RunHost({L"--script", File(L"script.jsonl"), L"--machine", File(L"machine.json")});
        EXPECT_EQ(result.exitCode, 2U);
        return result.errors;
    };
    EXPECT_THAT(refused(R"({"at": "0s", "do": "plug_device", "device": "USB\\1"})", kMachine),
                HasSubstr("script.jsonl:1: '"));
    EXPECT_THAT(refused(R"({"at": "0s", "do": "plug_device", "device": "USB\\1"})", kMachine),
                HasSubstr("' describes no device \"USB\\1\"; describe it there, with \"present\": "
                          "false if it comes later\n"));
    EXPECT_THAT(refused(R"({"at": "0s", "do": "plug_device", "device": "USB\\DEAF"})", kMachine),
                HasSubstr("script.jsonl:1: \"USB\\DEAF\" has no device interface, so nobody would "
                          "hear of it; describe one in '"));
    EXPECT_THAT(
        refused(R"({"at": "0s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 1})",
                "{}"),
        HasSubstr("machine.json', so there are no switches; describe a console session there\n"));
}

TEST_F(HostMachineRun, HasToGiveBackWhatTheSystemHandsOut) {
    WriteFile(File(L"machine.json"), "{}");
    const ChildResult result =
        RunHost({L"--seconds", L"0", L"--machine", File(L"machine.json"), L"--plugin",
                 test_support::ProgramFolder() + L"\\host_test_plugins\\keeping_plugin.dll"});
    EXPECT_EQ(result.exitCode, 1U);
    EXPECT_THAT(result.errors,
                testing::MatchesRegex("tallyport_host: the plug-in did not give back what the "
                                      "system handed out: device set 0x\\w+ .* was not "
                                      "given back; it has to, on every way out\n"));
}

}  // namespace
}  // namespace host_test
