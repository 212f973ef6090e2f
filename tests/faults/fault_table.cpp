#include "faults/fault_table.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

#include "simulation/machine_loader.h"

namespace faults_test {
namespace {

const std::filesystem::path kFolder = FAULTS_FOLDER;

Json ReadJson(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return Json::parse(stream);
}

Scene MakeScene(const Json& machineChanges) {
    const Json described = ReadJson(kFolder / "everything.json").patch(machineChanges);
    Scene scene;
    scene.machine = simulation::ParseMachine(described.dump(), "everything.json");
    // What is absent at first arrives later.
    std::vector<simulation::Device>& devices = scene.machine.devices;
    const auto absent =
        std::find_if(devices.begin(), devices.end(),
                     [](const simulation::Device& device) { return !device.present; });
    scene.arriving = *absent;
    scene.arriving.present = true;
    devices.erase(absent);
    return scene;
}

/// [["remove", "/left/0"], ["add", "/left/0", "File"]] as a JSON patch.
Json PatchOf(const Json& changes, const Json& named) {
    Json patch = Json::array();
    for (const Json& change : changes) {
        if (change.at(0) == "use") {
            const Json used = PatchOf(named.at(change.at(1).get<std::string>()), named);
            patch.insert(patch.end(), used.begin(), used.end());
            continue;
        }
        Json operation = {{"op", change.at(0)}, {"path", change.at(1)}};
        if (change.size() > 2) {
            operation["value"] = change.at(2);
        }
        patch.push_back(std::move(operation));
    }
    return patch;
}

bool Fits(const Json& rule, const Call& call) {
    if (rule.at("call") != call.function) {
        return false;
    }
    const Json where = rule.value("where", Json::object());
    return std::all_of(where.items().begin(), where.items().end(), [&](const auto& wanted) {
        if (wanted.key() == "nth") {
            return wanted.value() == call.nth;
        }
        const auto found = call.context.find(wanted.key());
        return found != call.context.end() && wanted.value() == found->second;
    });
}

FaultRun MakeRun(const Json& rule, const Json& way, const std::string& function, unsigned nth,
                 const Json& normal, const Json& named) {
    FaultRun run;
    run.fault = {function, nth, way.at(0), way.size() > 1 ? way.at(1).get<unsigned>() : 0};
    run.ends = rule.value("ends", "");
    if (run.ends.empty()) {
        run.expected = normal.patch(PatchOf(rule.at("expect"), named));
    }
    return run;
}

}  // namespace

FaultGroup::FaultGroup(const std::string& name) {
    const Json document = ReadJson(kFolder / "expected" / (name + ".json"));
    scenario = document.at("scenario");
    named = document.value("named", Json::object());
    rules = document.at("faults");
}

std::vector<FaultRun> FaultGroup::Runs(const Scenario& of, const std::vector<Call>& calls) const {
    std::vector<FaultRun> runs;
    std::set<std::string> taken;
    for (const Json& rule : rules) {
        if (rule.contains("cannotFail")) {
            continue;
        }
        std::size_t added = 0;
        for (const Json& way : rule.at("ways")) {
            if (rule.at("call") == "malloc") {
                runs.push_back(MakeRun(rule, way, "malloc", 1, of.outcome, named));
                ++added;
            }
            for (const Call& call : calls) {
                const std::string key = call.function + " " + std::to_string(call.nth) + way.dump();
                if (Fits(rule, call) && taken.insert(key).second) {
                    runs.push_back(MakeRun(rule, way, call.function, call.nth, of.outcome, named));
                    ++added;
                }
            }
        }
        if (added == 0) {
            throw std::runtime_error("no call fits the rule " + rule.dump());
        }
    }
    return runs;
}

bool FaultGroup::Covers(const Call& call) const {
    return std::any_of(rules.begin(), rules.end(),
                       [&](const Json& rule) { return Fits(rule, call); });
}

bool FaultGroup::Names(const std::string& function) const {
    return std::any_of(rules.begin(), rules.end(),
                       [&](const Json& rule) { return rule.at("call") == function; });
}

Json LoadNotTried() { return ReadJson(kFolder / "not_tried.json").at("functions"); }

std::vector<std::string> GroupNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder / "expected")) {
        names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Scenario LoadScenario(const std::string& name) {
    const Json document = ReadJson(kFolder / "scenarios" / (name + ".json"));
    Scenario scenario{name, MakeScene(document.value("machine", Json::array())), {}, {}};
    scenario.scene.managerIsLoaded = document.value("managerIsLoaded", true);
    scenario.only = document.value("only", std::vector<std::string>());
    scenario.outcome = document.at("outcome");
    return scenario;
}

std::string Describe(const PlannedFault& fault) {
    return "\"" + fault.call + "\" " + std::to_string(fault.nth) + " " + fault.way + " " +
           std::to_string(fault.number);
}

}  // namespace faults_test
