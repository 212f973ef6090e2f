#include "host/run/script.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "host/machine_time.h"
#include "records/json_lines.h"

namespace host {
namespace {

using simulation::JsonNode;
using Members = std::map<std::string, JsonNode>;

/// A kind of happening. The example has the members that such a line has, neither more nor fewer.
struct Verb {
    const char* name;
    const char* example;
    void (*read)(const Members& members, Happening& happening);
};

void ReadFireFirmwareEvent(const Members& members, Happening& happening) {
    const auto code = members.at("code").Whole<std::uint32_t>();
    happening.action = FireFirmwareEvent{code};
    happening.text = "the firmware raises event " + std::to_string(code);
}

void ReadSetSwitch(const Members& members, Happening& happening) {
    const JsonNode& value = members.at("value");
    SetSwitch action{
        members.at("switch").Word<std::wstring>({{"PopUpBlockingStatus", L"PopUpBlockingStatus"},
                                                 {"PowerfulModeStatus", L"PowerfulModeStatus"}}),
        std::nullopt};
    happening.text = members.at("switch").Utf8();
    if (value.IsNull()) {
        happening.text += " is removed";
    } else {
        action.value = value.Whole<std::int32_t>();
        happening.text += " becomes " + std::to_string(*action.value);
    }
    happening.action = action;
}

void ReadSetConsent(const Members& members, Happening& happening) {
    const std::string answer = members.at("answer").Utf8();
    happening.action = SetConsent{answer};
    happening.text = "the answer to the data clause becomes \"" + answer + "\"";
}

void ReadSetFeature(const Members& members, Happening& happening) {
    const SetFeature action{members.at("name").Utf8(), members.at("value").Whole<std::int32_t>()};
    happening.action = action;
    happening.text = "feature " + action.name + " becomes " + std::to_string(action.value);
}

template <bool plugIn>
void ReadPlugDevice(const Members& members, Happening& happening) {
    happening.action = PlugDevice{members.at("device").Text(), plugIn};
    happening.text = members.at("device").Utf8() + (plugIn ? " is plugged in" : " is unplugged");
}

void ReadRestartPlugin(const Members& /*members*/, Happening& happening) {
    happening.action = RestartPlugin{};
    happening.text = "the plug-in is restarted";
}

void ReadStop(const Members& /*members*/, Happening& happening) {
    happening.action = StopRun{};
    happening.text = "the run ends";
}

constexpr Verb kStop{"stop", R"({"at": "3d 04:00", "do": "stop"})", &ReadStop};
constexpr Verb kVerbs[] = {
    {"fire_firmware_event", R"({"at": "1d 12:00", "do": "fire_firmware_event", "code": 675})",
     &ReadFireFirmwareEvent},
    {"set_switch",
     R"({"at": "2h", "do": "set_switch", "switch": "PowerfulModeStatus", "value": 1})",
     &ReadSetSwitch},
    {"set_consent", R"({"at": "4d", "do": "set_consent", "answer": "1"})", &ReadSetConsent},
    {"set_feature", R"({"at": "2h", "do": "set_feature", "name": "ReportDeviceList", "value": 3})",
     &ReadSetFeature},
    {"plug_device", R"({"at": "2h", "do": "plug_device", "device": "USB\\VID_0951&PID_1666\\01"})",
     &ReadPlugDevice<true>},
    {"unplug_device",
     R"({"at": "3h", "do": "unplug_device", "device": "USB\\VID_0951&PID_1666\\01"})",
     &ReadPlugDevice<false>},
    {"restart_plugin", R"({"at": "10d", "do": "restart_plugin"})", &ReadRestartPlugin},
    kStop};

std::string Advice(const Verb& verb) { return std::string("; write for example ") + verb.example; }

const Verb& ReadVerb(const JsonNode& node) {
    std::vector<std::pair<std::string_view, const Verb*>> verbs;
    for (const Verb& verb : kVerbs) {
        verbs.emplace_back(verb.name, &verb);
    }
    return *node.Word(verbs);
}

/// A misspelt member would otherwise be passed over in silence.
Members ReadMembers(const JsonNode& line, const Verb& verb) {
    Members members;
    const nlohmann::json example = nlohmann::json::parse(verb.example);
    for (const auto& [key, member] : line.Members()) {
        if (!example.contains(key)) {
            line.Fail("unknown key \"" + key + "\"");
        }
        members.emplace(key, member);
    }
    for (const auto& [key, value] : example.items()) {
        members.emplace(key, records::Member(line, key));
    }
    return members;
}

Happening ReadHappening(const JsonNode& line, const Verb& verb) {
    Happening happening;
    const Members members = ReadMembers(line, verb);
    const JsonNode& at = members.at("at");
    const auto time = ParseMachineTime(at.Utf8());
    if (!time) {
        at.FailExpecting("a time since Start such as \"3d 04:00\" or \"1h 30m\"");
    }
    happening.at = *time;
    verb.read(members, happening);
    return happening;
}

}  // namespace

std::vector<Happening> ParseScript(std::string_view text, std::string_view path) {
    std::vector<Happening> happenings;
    records::ForEachLine(text, path, [&](std::string_view line, const std::string& place) {
        if (line[line.find_first_not_of(" \t")] == '#') {
            return;
        }
        std::string advice = Advice(kStop);
        records::ReadJsonLine(line, place, advice, [&](const JsonNode& value) {
            const Verb& verb = ReadVerb(records::Member(value, "do"));
            advice = Advice(verb);
            happenings.push_back(ReadHappening(value, verb));
        });
        happenings.back().place = place;
    });
    std::stable_sort(
        happenings.begin(), happenings.end(),
        [](const Happening& left, const Happening& right) { return left.at < right.at; });
    return happenings;
}

}  // namespace host
