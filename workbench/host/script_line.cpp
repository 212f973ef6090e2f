#include "host/script_line.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/host_error.h"
#include "host/machine_time.h"
#include "standins/common/text.h"

namespace host {
namespace {

using Json = nlohmann::json;

/// Reads the members of one line's object, each with a message of its own when it is not as it
/// should be.
class LineReader {
public:
    LineReader(std::string_view line, const std::string& thePlace) : place(thePlace) {
        try {
            object = Json::parse(line);
        } catch (const Json::parse_error& error) {
            throw Defect("not valid JSON at column " + std::to_string(error.byte) +
                         "; write one object per line, such as " + kExample);
        } catch (const Json::out_of_range&) {
            throw Defect(std::string("a number is too large; write one object per line, such as ") +
                         kExample);
        }
        if (!object.is_object()) {
            throw Defect(std::string("not a JSON object; write one such as ") + kExample);
        }
    }

    HostError Defect(const std::string& what) const {
        return HostError(ExitCode::BadInput, place + ": " + what);
    }

    std::string Text(const char* key, const char* example) const {
        const Json& value = Member(key, example);
        if (!value.is_string()) {
            throw WrongType(key, "a text", example);
        }
        return value.get<std::string>();
    }

    std::int64_t Number(const char* key, const char* example, std::int64_t low,
                        std::int64_t high) const {
        const Json& value = Member(key, example);
        if (!value.is_number_integer()) {
            throw WrongType(key, "a whole number", example);
        }
        // A number above the signed range must not wrap round into the allowed one.
        const bool tooLarge = value.is_number_unsigned() &&
                              value.get<std::uint64_t>() > static_cast<std::uint64_t>(high);
        if (tooLarge || value.get<std::int64_t>() < low) {
            throw Defect(Quoted(key) + " is " + value.dump() + "; it goes from " +
                         std::to_string(low) + " to " + std::to_string(high));
        }
        return value.get<std::int64_t>();
    }

    std::int32_t Int32(const char* key, const char* example) const {
        return static_cast<std::int32_t>(Number(key, example,
                                                std::numeric_limits<std::int32_t>::min(),
                                                std::numeric_limits<std::int32_t>::max()));
    }

    bool IsNull(const char* key) const {
        const auto member = object.find(key);
        return member != object.end() && member->is_null();
    }

    /// A misspelt member would otherwise be passed over in silence.
    void RefuseOthersThan(std::initializer_list<std::string_view> known) const {
        for (const auto& [key, value] : object.items()) {
            if (std::find(known.begin(), known.end(), key) == known.end()) {
                std::string names;
                for (const std::string_view name : known) {
                    names += (names.empty() ? "" : ", ") + Quoted(name);
                }
                throw Defect(Quoted(key) + " does not belong here; this line has " + names);
            }
        }
    }

private:
    static constexpr char kExample[] = R"({"at": "3d 04:00", "do": "stop"})";

    static std::string Quoted(std::string_view name) { return '"' + std::string(name) + '"'; }

    const Json& Member(const char* key, const char* example) const {
        const auto member = object.find(key);
        if (member == object.end()) {
            throw Defect(Quoted(key) + " is missing; write for example " + Quoted(key) + ": " +
                         example);
        }
        return *member;
    }

    HostError WrongType(const char* key, const char* type, const char* example) const {
        return Defect(Quoted(key) + " is not " + type + "; write for example " + Quoted(key) +
                      ": " + example);
    }

    Json object;
    const std::string& place;
};

constexpr std::string_view kSwitchNames[] = {"PopUpBlockingStatus", "PowerfulModeStatus"};

Action ReadSetSwitch(const LineReader& line) {
    line.RefuseOthersThan({"at", "do", "switch", "value"});
    const std::string name = line.Text("switch", R"("PopUpBlockingStatus")");
    if (std::find(std::begin(kSwitchNames), std::end(kSwitchNames), name) ==
        std::end(kSwitchNames)) {
        throw line.Defect("there is no switch \"" + name +
                          "\"; use \"PopUpBlockingStatus\" or \"PowerfulModeStatus\"");
    }
    SetSwitch action{standins::ToWide(name), std::nullopt};
    if (!line.IsNull("value")) {
        action.value = line.Int32("value", "1");
    }
    return action;
}

Action ReadPlugDevice(const LineReader& line, bool plugIn) {
    line.RefuseOthersThan({"at", "do", "device"});
    return PlugDevice{standins::ToWide(line.Text("device", R"("USB\\VID_0951&PID_1666\\01")")),
                      plugIn};
}

Action ReadAction(const LineReader& line, const std::string& verb) {
    if (verb == "fire_firmware_event") {
        line.RefuseOthersThan({"at", "do", "code"});
        return FireFirmwareEvent{static_cast<std::uint32_t>(
            line.Number("code", "675", 0, std::numeric_limits<std::uint32_t>::max()))};
    }
    if (verb == "set_switch") {
        return ReadSetSwitch(line);
    }
    if (verb == "set_consent") {
        line.RefuseOthersThan({"at", "do", "answer"});
        return SetConsent{line.Text("answer", R"("1")")};
    }
    if (verb == "set_feature") {
        line.RefuseOthersThan({"at", "do", "name", "value"});
        return SetFeature{line.Text("name", R"("ReportDeviceList")"), line.Int32("value", "3")};
    }
    if (verb == "plug_device" || verb == "unplug_device") {
        return ReadPlugDevice(line, verb == "plug_device");
    }
    if (verb == "restart_plugin") {
        line.RefuseOthersThan({"at", "do"});
        return RestartPlugin{};
    }
    if (verb == "stop") {
        line.RefuseOthersThan({"at", "do"});
        return StopRun{};
    }
    throw line.Defect("there is no happening \"" + verb +
                      "\"; use fire_firmware_event, set_switch, set_consent, set_feature, "
                      "plug_device, unplug_device, restart_plugin or stop");
}

struct ActionText {
    std::string operator()(const FireFirmwareEvent& action) const {
        return "the firmware raises event " + std::to_string(action.code);
    }
    std::string operator()(const SetSwitch& action) const {
        const std::string name = standins::ToUtf8(action.name);
        return action.value ? name + " becomes " + std::to_string(*action.value)
                            : name + " is removed";
    }
    std::string operator()(const SetConsent& action) const {
        return "the answer to the data clause becomes \"" + action.answer + "\"";
    }
    std::string operator()(const SetFeature& action) const {
        return "feature " + action.name + " becomes " + std::to_string(action.value);
    }
    std::string operator()(const PlugDevice& action) const {
        return standins::ToUtf8(action.instanceId) +
               (action.plugIn ? " is plugged in" : " is unplugged");
    }
    std::string operator()(const RestartPlugin&) const { return "the plug-in is restarted"; }
    std::string operator()(const StopRun&) const { return "the run ends"; }
};

}  // namespace

Happening ParseScriptLine(std::string_view line, const std::string& place) {
    const LineReader reader(line, place);
    const std::string at = reader.Text("at", R"("3d 04:00")");
    const auto time = ParseMachineTime(at);
    if (!time) {
        throw reader.Defect("\"at\" is \"" + at +
                            "\"; write a time since Start such as \"3d 04:00\" or \"1h 30m\"");
    }
    const Action action = ReadAction(reader, reader.Text("do", R"("stop")"));
    return {*time, action, place, std::visit(ActionText{}, action)};
}

}  // namespace host
