#include "host/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/host_error.h"

namespace host {
namespace {

using std::chrono::seconds;

std::string ErrorOf(std::string_view text) {
    try {
        ParseScript(text, "story.jsonl");
    } catch (const HostError& error) {
        EXPECT_EQ(error.Code(), ExitCode::BadInput);
        return error.what();
    }
    return "no error";
}

TEST(Script, ReadsEveryHappening) {
    const auto script = ParseScript(
        R"({"at": "1s", "do": "fire_firmware_event", "code": 4294967295}
{"at": "2s", "do": "set_switch", "switch": "PowerfulModeStatus", "value": -2147483648}
{"at": "3s", "do": "set_switch", "switch": "PopUpBlockingStatus", "value": null}
{"at": "4s", "do": "set_consent", "answer": " 1"}
{"at": "5s", "do": "set_feature", "name": "ReportDeviceList", "value": 4}
{"at": "6s", "do": "plug_device", "device": "USB\\é"}
{"at": "7s", "do": "unplug_device", "device": "USB\\1"}
{"at": "8s", "do": "restart_plugin"}
{"at": "1d 00:00:09", "do": "stop"})",
        "story.jsonl");

    ASSERT_EQ(script.size(), 9U);
    EXPECT_EQ(std::get<FireFirmwareEvent>(script[0].action).code, 4294967295U);
    EXPECT_EQ(std::get<SetSwitch>(script[1].action).name, L"PowerfulModeStatus");
    EXPECT_EQ(std::get<SetSwitch>(script[1].action).value, -2147483647 - 1);
    EXPECT_EQ(std::get<SetSwitch>(script[2].action).name, L"PopUpBlockingStatus");
    EXPECT_EQ(std::get<SetSwitch>(script[2].action).value, std::nullopt);
    EXPECT_EQ(std::get<SetConsent>(script[3].action).answer, " 1");
    EXPECT_EQ(std::get<SetFeature>(script[4].action).name, "ReportDeviceList");
    EXPECT_EQ(std::get<SetFeature>(script[4].action).value, 4);
    EXPECT_EQ(std::get<PlugDevice>(script[5].action).instanceId, L"USB\\\u00e9");
    EXPECT_TRUE(std::get<PlugDevice>(script[5].action).plugIn);
    EXPECT_EQ(std::get<PlugDevice>(script[6].action).instanceId, L"USB\\1");
    EXPECT_FALSE(std::get<PlugDevice>(script[6].action).plugIn);
    EXPECT_TRUE(std::holds_alternative<RestartPlugin>(script[7].action));
    EXPECT_TRUE(std::holds_alternative<StopRun>(script[8].action));
    EXPECT_EQ(script[8].at, seconds(86409));
    EXPECT_EQ(script[8].place, "story.jsonl:9");
}

TEST(Script, IsOrderedByTimeAndThenByLine) {
    const auto script = ParseScript(
        "{\"at\": \"2s\", \"do\": \"set_consent\", \"answer\": \"b\"}\r\n"
        "\r\n"
        "  # the line above and this one hold nothing\n"
        "{\"at\": \"1s\", \"do\": \"stop\"}\n"
        "{\"at\": \"2s\", \"do\": \"set_consent\", \"answer\": \"c\"}",
        "story.jsonl");

    ASSERT_EQ(script.size(), 3U);
    EXPECT_EQ(script[0].place, "story.jsonl:4");
    EXPECT_EQ(std::get<SetConsent>(script[1].action).answer, "b");
    EXPECT_EQ(std::get<SetConsent>(script[2].action).answer, "c");
}

TEST(Script, MayBeEmpty) { EXPECT_TRUE(ParseScript("\n# nothing\n", "story.jsonl").empty()); }

struct Defect {
    const char* line;
    const char* message;  ///< Behind file and line.
};

std::ostream& operator<<(std::ostream& stream, const Defect& defect) {
    return stream << defect.line;
}

class ScriptDefect : public testing::TestWithParam<Defect> {};

TEST_P(ScriptDefect, IsToldWithPlaceAndRemedy) {
    // The defect counts even behind a happening that is in order.
    const std::string text =
        "{\"at\": \"1s\", \"do\": \"stop\"}\n" + std::string(GetParam().line) + "\n";
    EXPECT_EQ(ErrorOf(text), "story.jsonl:2: " + std::string(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Json, ScriptDefect,
    testing::Values(Defect{"stop",
                           "not valid JSON at column 1; write one object per line, such as "
                           "{\"at\": \"3d 04:00\", \"do\": \"stop\"}"},
                    Defect{R"({"at": "1s", "do": "stop"} {})",
                           "not valid JSON at column 28; write one object per line, such as "
                           "{\"at\": \"3d 04:00\", \"do\": \"stop\"}"},
                    Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": 1e999})",
                           "a number is too large; write one object per line, such as "
                           "{\"at\": \"3d 04:00\", \"do\": \"stop\"}"},
                    Defect{"[1]",
                           "not a JSON object; write one such as "
                           "{\"at\": \"3d 04:00\", \"do\": \"stop\"}"}));

INSTANTIATE_TEST_SUITE_P(
    Members, ScriptDefect,
    testing::Values(
        Defect{R"({"do": "stop"})", R"("at" is missing; write for example "at": "3d 04:00")"},
        Defect{R"({"at": 5, "do": "stop"})",
               R"("at" is not a text; write for example "at": "3d 04:00")"},
        Defect{R"({"at": "soon", "do": "stop"})",
               R"("at" is "soon"; write a time since Start such as "3d 04:00" or "1h 30m")"},
        Defect{R"({"at": "1s"})", R"("do" is missing; write for example "do": "stop")"},
        Defect{R"({"at": "1s", "do": "explode"})",
               "there is no happening \"explode\"; use fire_firmware_event, set_switch, "
               "set_consent, set_feature, plug_device, unplug_device, restart_plugin or stop"},
        Defect{R"({"at": "1s", "do": "stop", "cod": 1})",
               R"("cod" does not belong here; this line has "at", "do")"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event"})",
               R"("code" is missing; write for example "code": 675)"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": "675"})",
               R"("code" is not a whole number; write for example "code": 675)"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": 67.5})",
               R"("code" is not a whole number; write for example "code": 675)"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": -1})",
               R"("code" is -1; it goes from 0 to 4294967295)"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": 4294967296})",
               R"("code" is 4294967296; it goes from 0 to 4294967295)"},
        Defect{R"({"at": "1s", "do": "fire_firmware_event", "code": 18446744073709551615})",
               R"("code" is 18446744073709551615; it goes from 0 to 4294967295)"},
        Defect{R"({"at": "1s", "do": "set_switch", "switch": "Light", "value": 1})",
               "there is no switch \"Light\"; use \"PopUpBlockingStatus\" or "
               "\"PowerfulModeStatus\""},
        Defect{R"({"at": "1s", "do": "set_switch", "switch": "PowerfulModeStatus"})",
               R"("value" is missing; write for example "value": 1)"},
        Defect{R"({"at": "1s", "do": "set_consent", "answer": 1})",
               R"("answer" is not a text; write for example "answer": "1")"},
        Defect{R"({"at": "1s", "do": "set_feature", "name": "a", "value": 2147483648})",
               R"("value" is 2147483648; it goes from -2147483648 to 2147483647)"},
        Defect{
            R"({"at": "1s", "do": "plug_device"})",
            R"("device" is missing; write for example "device": "USB\\VID_0951&PID_1666\\01")"}));

}  // namespace
}  // namespace host
