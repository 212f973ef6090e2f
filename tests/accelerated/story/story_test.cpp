// Whole stories of the plug-in that ships, on the fast clock, compared event by event with a model
// that was written from the rules alone.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "accelerated/story/story_run.h"

namespace story {
namespace {

using nlohmann::json;
using std::chrono::hours;

constexpr char kLaptop[] = "office_laptop_with_dock.json";
constexpr char kDesktop[] = "bare_desktop.json";
constexpr char kBench[] = "workstation_600_devices.json";

constexpr char kStick[] = "USB\\VID_0781&PID_5581\\4C530001";

hours Days(int days) { return hours(24 * days); }

Happening At(const char* time, const char* what) { return {{"at", time}, {"do", what}}; }

Happening Firmware(const char* time, unsigned code) {
    Happening happening = At(time, "fire_firmware_event");
    happening["code"] = code;
    return happening;
}

Happening Consent(const char* time, const char* answer) {
    Happening happening = At(time, "set_consent");
    happening["answer"] = answer;
    return happening;
}

Happening Feature(const char* time, int value) {
    Happening happening = At(time, "set_feature");
    happening["name"] = "ReportDeviceList";
    happening["value"] = value;
    return happening;
}

/// `value` may be null.
Happening Switch(const char* time, const char* name, const json& value) {
    Happening happening = At(time, "set_switch");
    happening["switch"] = name;
    happening["value"] = value;
    return happening;
}

Happening Device(const char* time, const char* what, const char* id) {
    Happening happening = At(time, what);
    happening["device"] = id;
    return happening;
}

json& DeviceOf(json& machine, const std::string& id) {
    for (json& device : machine["devices"]) {
        if (device.value("id", "") == id) {
            return device;
        }
    }
    throw std::runtime_error("no device " + id);
}

/// A printer whose entry takes up so much of a chunk: 147 to 179.
json PrinterOfCost(std::size_t number, std::size_t cost) {
    const std::string entry =
        R"({"class":"Printer","desc":"","device":"RAW DATA\nPORT 1","maker":"","name":""})";
    const std::string full(32, 'x');
    // Queues are told apart by their names.
    const std::string name = std::to_string(number) + full.substr(std::to_string(number).size());
    return {{"name", name},
            {"driverName", full},
            {"dataType", "RAW DATA"},
            {"portName", "PORT 1"},
            {"driver", {{"manufacturer", std::string(cost - 5 - entry.size() - 64, 'm')}}}};
}

/// Plays it, demands that nothing differs from the model, and returns what was seen.
StoryResult Play(const json& machine, const std::vector<Happening>& script, hours duration) {
    /// More than a few mean that the times say nothing any more.
    constexpr int kMostTolerated = 3;
    StoryResult result = PlayStory(machine, script, duration);
    EXPECT_EQ(result.differences, "");
    EXPECT_LE(result.tolerated, kMostTolerated);
    std::cout << result.runs << " starts, " << result.events << " events compared, "
              << result.deviceLists << " device lists, " << result.refusals
              << " times without the user's agreement, " << result.tolerated
              << " outcomes close to a limit, "
              << std::chrono::duration_cast<hours>(result.timeLost).count() << " hours lost\n";
    return result;
}

/// A machine that is so busy that it loses hours may have one list more or less in them, because a
/// restart or the end comes before or after it: that each is right, Play demands all the same.
void ExpectLists(const StoryResult& seen, int number, hours timeToSpare = hours(7)) {
    EXPECT_NEAR(seen.deviceLists, number, seen.timeLost <= timeToSpare ? 0 : seen.runs);
}

/// That the story shows something at all, where the machine had time for it.
void ExpectAtLeast(const StoryResult& seen, int counted, int least) {
    if (seen.timeLost <= hours(7)) {
        EXPECT_GE(counted, least);
    }
}

TEST(Story, ElevenDaysOfTheOfficeLaptop) {
    const StoryResult seen = Play(LoadMachine(kLaptop), ShippedScript(), Days(11));
    // Two had been sent before; the tenth ends the monitor, and the second start starts none.
    ExpectLists(seen, 8, hours(16));
    ExpectAtLeast(seen, seen.refusals, 6);
    ExpectAtLeast(seen, seen.events, 31);
}

/// Every machine file there is, so that none is forgotten.
class EveryMachine : public testing::TestWithParam<std::string> {};

TEST_P(EveryMachine, IsReportedRightForThreeDaysAndAStart) {
    const StoryResult seen = Play(
        LoadMachine(GetParam()), {Firmware("12h", 675), At("2d 12:00", "restart_plugin")}, Days(4));
    EXPECT_EQ(seen.runs, 2);
    ExpectLists(seen, 3);
    ExpectAtLeast(seen, seen.events, 6);
}

INSTANTIATE_TEST_SUITE_P(Story, EveryMachine, testing::ValuesIn(MachineFileNames()),
                         [](const auto& machine) {
                             return machine.param.substr(0, machine.param.find('.'));
                         });

TEST(Story, TheUserAnswersInManyWays) {
    json machine = LoadMachine(kDesktop);
    machine["suite"]["consent"] = "11";
    machine["suite"]["shelf"] = {{"VRLoginGuide", {"japan", "china"}}};
    // The next BIOS report becomes due right before the second start.
    const StoryResult seen =
        Play(machine,
             {Consent("1d 02:30", ""), Consent("1d 05:30", " 1"), Consent("1d 08:30", "0"),
              Consent("1d 12:30", "1"), Consent("2d 00:30", "no"), Consent("2d 16:00", "1"),
              At("3d 00:10", "restart_plugin"), Consent("3d 12:00", "")},
             Days(5));
    ExpectLists(seen, 2);
    ExpectAtLeast(seen, seen.refusals, 21);
}

TEST(Story, TheLastTwoListsAreSentAcrossStarts) {
    json machine = LoadMachine(kLaptop);
    // The BIOS report is not due before the second day.
    machine["registry"] = {{"reportDevicesCount", 8},
                           {"biosReportTime", std::time(nullptr) - std::int64_t{30} * 3600},
                           {"popUpBlocking", 2},
                           {"powerfulMode", 1}};
    const StoryResult seen =
        Play(machine,
             {Device("6h", "plug_device", kStick), At("1d 12:00", "restart_plugin"),
              Device("1d 18:00", "unplug_device", kStick), At("2d 06:00", "restart_plugin"),
              Switch("2d 12:00", "PowerfulModeStatus", 0), At("3d 18:00", "restart_plugin")},
             Days(4));
    ExpectLists(seen, 2);
    EXPECT_EQ(seen.runs, 4);
}

TEST(Story, FeatureSwitchesAndRegionsAreAskedAtEachStart) {
    json machine = LoadMachine(kLaptop);
    machine["suite"]["features"]["ReportDeviceList"] = 2;
    machine["suite"]["ecLog"]["status"] = 2;
    machine["registry"] = {{"popUpBlocking", 0}};
    // At the last start less than an hour is missing to the next BIOS report.
    const StoryResult seen =
        Play(machine,
             {Feature("6h", 3), Firmware("7h", 675), Switch("1d 12:00", "PowerfulModeStatus", 1),
              At("1d 14:00", "restart_plugin"), Feature("2d", 4),
              Switch("2d 20:00", "PopUpBlockingStatus", nullptr), At("2d 23:15", "restart_plugin")},
             Days(4));
    ExpectLists(seen, 1);

    machine["suite"]["features"]["ReportDeviceList"] = 3;
    machine["suite"]["shelf"] = {{"VRLoginGuide", {"japan"}}};
    machine["firmware"] = nullptr;
    machine["suite"]["firmwareStartResult"] = 5;
    const StoryResult abroad = Play(machine, {Firmware("6h", 675)}, Days(2));
    EXPECT_EQ(abroad.deviceLists, 0);
    EXPECT_EQ(abroad.events, 0);
}

TEST(Story, DevicesComeAndGoOnAFullBench) {
    json machine = LoadMachine(kBench);
    const char key[] = "USB\\VID_1A3C&PID_0001\\RACK-KEY-0001";
    const StoryResult seen =
        Play(machine,
             {Device("6h", "unplug_device", key), Switch("8h", "PopUpBlockingStatus", 1),
              At("1d 12:00", "restart_plugin"), Switch("1d 18:00", "PowerfulModeStatus", 7),
              Device("2d", "plug_device", key)},
             Days(3));
    ExpectLists(seen, 2);
}

TEST(Story, AwkwardDevicesAreDescribedRight) {
    json machine = LoadMachine(kLaptop);
    // Two names, one within the other, a class that only contains the forbidden word, a container
    // that several devices without one share, and texts that need care.
    auto& adapter = DeviceOf(machine, "USB\\VID_1D5C&PID_8156\\000001")["properties"];
    adapter["FriendlyName"] = "Dock \"LAN\" \\ \t eins";
    adapter["Name"] = "Dock 2";
    auto& board = DeviceOf(machine, "USB\\VID_1D5C&PID_5B00\\DK24B0017")["properties"];
    board["FriendlyName"] = "Billboard Device No. 1";
    board["Name"] = "Device No";
    board["DeviceDesc"] = "0123456789012345678901234567890\xF0\x9F\x98\x80 behind the cut";
    DeviceOf(machine, "USB\\VID_3A5C&PID_1101&MI_00\\7&16d2b9f3&0&0000")["properties"]["Class"] =
        "AudioSystems";
    DeviceOf(machine, kStick)["properties"]["ContainerId"] = nullptr;
    auto& camera =
        DeviceOf(machine, "USB\\VID_2B7E&PID_B74A&MI_00\\6&2a11f3c0&0&0000")["properties"];
    camera["ContainerId"] = nullptr;
    DeviceOf(machine, "USB\\VID_0F0F&PID_9025\\AA04012700008311")["statusResult"] = 13;
    machine["display"]["topology"] = "clone";
    machine["display"]["paths"][1]["edid"] = nullptr;
    // The sixth printer is one too much for the first chunk, the eleventh fits exactly into the
    // next.
    machine["printers"] = json::array();
    for (const std::size_t cost : {170, 170, 170, 170, 170, 171, 170, 170, 170, 170, 169, 170}) {
        machine["printers"].push_back(PrinterOfCost(machine["printers"].size(), cost));
    }
    const StoryResult seen = Play(machine, {Device("1d 12:00", "plug_device", kStick)}, Days(3));
    ExpectLists(seen, 2);
}

}  // namespace
}  // namespace story
