// Timed happenings of a run.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

struct FireFirmwareEvent {
    std::uint32_t code;
};
/// A switch of the optimisation component in the console user's settings. Absent: remove it.
struct SetSwitch {
    std::wstring name;
    std::optional<std::int32_t> value;
};
struct SetConsent {
    std::string answer;
};
struct SetFeature {
    std::string name;
    std::int32_t value;
};
/// A device that the machine file describes comes or goes.
struct PlugDevice {
    std::wstring instanceId;
    bool plugIn;
};
struct RestartPlugin {};
struct StopRun {};

using Action = std::variant<FireFirmwareEvent, SetSwitch, SetConsent, SetFeature, PlugDevice,
                            RestartPlugin, StopRun>;

/// One line of a script.
struct Happening {
    std::chrono::seconds at{};  ///< Machine time.
    Action action;
    std::string place;  ///< "story.jsonl:3", for messages.
    std::string text;   ///< What happens, for the screen.
};

/// Reads a whole script, ordered by time; happenings of the same time stay in the order of the
/// file. `path` is for messages. Throws BadInput that names file and line of the first defect.
std::vector<Happening> ParseScript(std::string_view text, std::string_view path);

}  // namespace host
