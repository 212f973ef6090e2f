#include "accelerated/story/story_run.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "accelerated/story/policy_model.h"
#include "simulation/machine_loader.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace story {
namespace {

/// Beyond the story itself: a hundred real seconds.
constexpr std::chrono::hours kPatience{1000};

/// Returns what the host shows.
std::string RunHost(const std::wstring& folder, std::chrono::hours duration) {
    const auto result = test_support::RunHost(
        {L"--hours", std::to_wstring(duration.count()), L"--machine", folder + L"\\machine.json",
         L"--script", folder + L"\\script.jsonl", L"--events", folder + L"\\events.ndjson",
         L"--log", folder + L"\\story.log"},
        {}, duration + kPatience);
    if (!result.finished || result.exitCode != 0 || !result.errors.empty()) {
        throw std::runtime_error("the host did not end well, exit code " +
                                 std::to_string(result.exitCode) + ": " + result.errors +
                                 result.output);
    }
    return result.output;
}

const std::filesystem::path kMachines = WORKBENCH_FOLDER "/simulation/machines";

}  // namespace

nlohmann::json LoadMachine(const std::string& fileName) {
    return nlohmann::json::parse(test_support::ReadFile((kMachines / fileName).wstring()));
}

std::vector<Happening> ShippedScript() {
    std::vector<Happening> script;
    for (const std::string& line : test_support::LinesOf(
             test_support::ReadFile(L"" WORKBENCH_FOLDER "/stories/office_laptop.jsonl"))) {
        if (!line.empty() && line.front() != '#') {
            script.push_back(nlohmann::json::parse(line));
        }
    }
    return script;
}

std::vector<std::string> MachineFileNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kMachines)) {
        const std::string name = entry.path().filename().string();
        if (name.find(".schema.") == std::string::npos) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

StoryResult PlayStory(const nlohmann::json& machine, const std::vector<Happening>& script,
                      std::chrono::hours duration) {
    const simulation::Machine facts = simulation::ParseMachine(machine.dump(), "the story");
    const test_support::TempFolder folder;
    std::string scriptText;
    for (const Happening& happening : script) {
        scriptText += happening.dump() + "\n";
    }
    test_support::WriteFile(folder.Path() + L"\\machine.json", machine.dump());
    test_support::WriteFile(folder.Path() + L"\\script.jsonl", scriptText);
    const std::string shown = RunHost(folder.Path(), duration);
    const Observation observation =
        ReadObservation(folder.Path() + L"\\story.log", folder.Path() + L"\\events.ndjson", shown);

    Findings findings(observation.begin);
    PolicyModel model(facts, script, observation, findings);
    model.Play();
    StoryResult result;
    result.differences = findings.Differences();
    result.events = findings.eventsCompared;
    result.deviceLists = model.deviceLists;
    result.refusals = model.refusals;
    result.runs = static_cast<int>(observation.runs.size());
    result.tolerated = findings.tolerated;
    result.timeLost = model.timeLost;
    return result;
}

}  // namespace story
