#include "accelerated/story/story_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "accelerated/story/policy_model.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace story {
namespace {

/// Beyond the story itself: ten real seconds or more.
constexpr std::chrono::hours kPatience{200};

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read '" + path.string() + "'");
    }
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void WriteFile(const std::wstring& path, const std::string& content) {
    std::ofstream file(std::filesystem::path(path), std::ios::binary);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("a file for the story cannot be written");
    }
}

/// Returns what the host shows.
std::string RunHost(const std::wstring& folder, std::chrono::hours duration) {
    const auto result = test_support::RunChild(
        test_support::ProgramFolder() + L"\\tallyport_host.exe",
        {L"--hours", std::to_wstring(duration.count()), L"--machine", folder + L"\\machine.json",
         L"--script", folder + L"\\script.jsonl", L"--events", folder + L"\\events.ndjson",
         L"--log", folder + L"\\story.log"},
        duration + kPatience, test_support::StandardError::Apart);
    if (!result.finished || result.exitCode != 0 || !result.errors.empty()) {
        throw std::runtime_error("the host did not end well: " + result.errors + result.output);
    }
    return result.output;
}

}  // namespace

nlohmann::json LoadMachine(const std::string& fileName) {
    return nlohmann::json::parse(ReadFile(std::filesystem::path(MACHINE_FOLDER) / fileName));
}

std::vector<std::string> MachineFileNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MACHINE_FOLDER)) {
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
    const MachineFacts facts = ReadMachineFacts(machine);
    const test_support::TempFolder folder;
    std::string scriptText;
    for (const Happening& happening : script) {
        scriptText += happening.dump() + "\n";
    }
    WriteFile(folder.Path() + L"\\machine.json", machine.dump());
    WriteFile(folder.Path() + L"\\script.jsonl", scriptText);
    const std::string shown = RunHost(folder.Path(), duration);
    const Observation observation =
        ReadObservation(ReadFile(folder.Path() + L"\\story.log"),
                        ReadFile(folder.Path() + L"\\events.ndjson"), shown);

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
    return result;
}

}  // namespace story
