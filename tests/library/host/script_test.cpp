#include "host/run/script.h"

#include <gtest/gtest.h>

#include "host/host_error.h"
#include "host/machine_time.h"

namespace host {
namespace {

using std::chrono::seconds;

TEST(Script, HasEveryHappeningOrderedByTimeAndThenByLine) {
    const auto script = ParseScript(
        "  # the line below holds nothing either\r\n"
        "\r\n"
        R"({"at": "1d 00:00:09", "do": "stop"}
{"at": "1s", "do": "fire_firmware_event", "code": 4294967295}
{"at": "2s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": -2147483648}
{"at": "3s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": null}
{"at": "4s", "do": "set_consent", "answer": " 1"}
{"at": "4s", "do": "set_feature", "name": "ReportDeviceList", "value": 4}
{"at": "6s", "do": "plug_device", "device": "USB\\é"}
{"at": "7s", "do": "unplug_device", "device": "USB\\1"}
{"at": "8s", "do": "restart_plugin"})",
        "story.jsonl");
    std::vector<std::string> shown;
    for (const Happening& one : script) {
        shown.push_back(FormatMachineTime(one.at) + " " + one.text + " (" + one.place + ")");
    }
    EXPECT_EQ(shown, (std::vector<std::string>{
                         "0d 00:00:01 the firmware raises event 4294967295 (story.jsonl:4)",
                         "0d 00:00:02 PowerfulModeStatus becomes -2147483648 (story.jsonl:5)",
                         "0d 00:00:03 PopUpBlockingStatus is removed (story.jsonl:6)",
                         "0d 00:00:04 the answer to the data clause becomes \" 1\" (story.jsonl:7)",
                         "0d 00:00:04 feature ReportDeviceList becomes 4 (story.jsonl:8)",
                         "0d 00:00:06 USB\\é is plugged in (story.jsonl:9)",
                         "0d 00:00:07 USB\\1 is unplugged (story.jsonl:10)",
                         "0d 00:00:08 the plug-in is restarted (story.jsonl:11)",
                         "1d 00:00:09 the run ends (story.jsonl:3)"}));
    EXPECT_EQ(std::get<SetSwitch>(script[1].action).value, -2147483647 - 1);
    EXPECT_EQ(std::get<PlugDevice>(script[5].action).instanceId, L"USB\\\u00e9");
}

struct Defect {
    const char* line;
    const char* message;  ///< Behind file and line, before the example.
    const char* example;
};

constexpr char kStop[] = R"({"at": "3d 04:00", "do": "stop"})";
constexpr char kFire[] = R"({"at": "1d 12:00", "do": "fire_firmware_event", "code": 675})";
constexpr char kSwitch[] =
    R"({"at": "2h", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 1})";

const Defect kDefects[] = {
    {R"({"at": "1s", "do": "stop"} {})", "not valid JSON at column 28", kStop},
    {R"({"at": "1s", "do": "fire_firmware_event", "code": 1e999})", "a number is too large", kStop},
    {"[1]", "the document: expected an object, found a list", kStop},
    {R"({"at": "1s"})", "the document: the key \"do\" is missing", kStop},
    {R"({"at": "1s", "do": "explode"})",
     "/do: expected one of \"fire_firmware_event\", \"set_switch\", \"set_consent\", "
     "\"set_feature\", \"plug_device\", \"unplug_device\", \"restart_plugin\", \"stop\", found "
     "\"explode\"",
     kStop},
    {R"({"do": "stop"})", "the document: the key \"at\" is missing", kStop},
    {R"({"at": "soon", "do": "stop"})",
     "/at: expected a time since Start such as \"3d 04:00\" or \"1h 30m\", found \"soon\"", kStop},
    {R"({"at": "1s", "do": "stop", "cod": 1})", "the document: unknown key \"cod\"", kStop},
    {R"({"at": "1s", "do": "fire_firmware_event"})", "the document: the key \"code\" is missing",
     kFire},
    {R"({"at": "1s", "do": "fire_firmware_event", "code": 4294967296})",
     "/code: expected a whole number from 0 to 4294967295, found 4294967296", kFire},
    {R"({"at": "1s", "do": "set_switch", "switch": "Light", "value": 1})",
     "/switch: expected one of \"PopUpBlockingStatus\", \"PowerfulModeStatus\", found \"Light\"",
     kSwitch}};

TEST(Script, TellsADefectWithPlaceAndExample) {
    for (const Defect& defect : kDefects) {
        SCOPED_TRACE(defect.line);
        try {
            // The defect counts even behind a happening that is in order.
            ParseScript(std::string(kStop) + "\n" + defect.line, "story.jsonl");
            ADD_FAILURE() << "no error";
        } catch (const BadInput& error) {
            EXPECT_EQ(error.what(), std::string("story.jsonl:2: ") + defect.message +
                                        "; write for example " + defect.example);
        }
    }
}

TEST(MachineTime, IsReadWithUnitsOrAsAClockTimeBehindDays) {
    const std::pair<const char*, int> readings[] = {
        {"0s", 0},       {"3d", 259200},          {"3d 04:00", 273600}, {"4:05:06", 14706},
        {"36h", 129600}, {"1d 2h 30m 5s", 95405}, {" 90s ", 90},        {"2d 23:59:59", 259199}};
    for (const auto& [text, time] : readings) {
        EXPECT_EQ(ParseMachineTime(text), seconds(time)) << text;
    }
    EXPECT_EQ(FormatMachineTime(seconds(95405)), "1d 02:30:05");
}

TEST(MachineTime, IsRefusedInAnotherForm) {
    for (const char* const text :
         {"", " ", "3", "d", "-1d", "1.5h", "3w", "24:00", "04:60", "04:5", "04:", "04:00:60",
          "04:00:00:00", "04:00 1d", "1h 04:00", "1h 1d", "1d 1d", "1d later", "1000000d"}) {
        EXPECT_EQ(ParseMachineTime(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace host
