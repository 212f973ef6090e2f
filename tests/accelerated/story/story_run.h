// A story: a machine, a script and a time, played by the built host with the built plug-in.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "accelerated/story/world.h"

namespace story {

struct StoryResult {
    std::string differences;  ///< Empty when everything was as the model expects it.
    int events = 0;           ///< How many were compared.
    int deviceLists = 0;
    int refusals = 0;
    int runs = 0;
    int tolerated = 0;
    std::chrono::milliseconds timeLost{};  ///< By a busy machine, see rhythm.h.
};

/// The content of a machine file. Throws std::runtime_error.
nlohmann::json LoadMachine(const std::string& fileName);
/// What happens in the story that the workbench plays by itself, for eleven days on the laptop.
std::vector<Happening> ShippedScript();
/// Names of all machine files, in order.
std::vector<std::string> MachineFileNames();

/// Throws std::runtime_error when the host does not end well, with what it said.
StoryResult PlayStory(const nlohmann::json& machine, const std::vector<Happening>& script,
                      std::chrono::hours duration);

}  // namespace story
