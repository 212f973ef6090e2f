#include "faults/fault_table.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>

#include "simulation/compiler_runtime.h"
#include "simulation/machine_loader.h"

namespace faults_test {
namespace {

const std::filesystem::path kFolder = FAULTS_FOLDER;
constexpr std::string_view kOnlyForGnu = "g++: ";

Json ReadJson(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return Json::parse(stream);
}

Json OfThisRuntime(Json outcome) {
    if (simulation::runtime::kIsMicrosofts) {
        outcome["keptBlocks"] = 0;
    }
    return outcome;
}

Scene MakeScene(const Json& machineChanges) {
    const Json described = ReadJson(kFolder / "everything.json").patch(machineChanges);
    Scene scene;
    scene.machine = simulation::ParseMachine(described.dump(), "everything.json");
    scene.machine.steadyNanoseconds = 5'000'000'000;
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

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end - begin));
    }
    return parts;
}

const std::map<char, std::string> kOperations{{'+', "add"}, {'=', "replace"}, {'-', "remove"}};

/// `named` are changes that have a name.
Json PatchOf(const std::string& changes, const std::map<std::string, Json>& named) {
    Json patch = Json::array();
    for (const std::string& change : Split(changes, "; ")) {
        const auto known = named.find(change);
        if (known != named.end()) {
            patch.insert(patch.end(), known->second.begin(), known->second.end());
            continue;
        }
        const std::size_t blank = change.find(' ');
        patch.push_back(
            {{"op", kOperations.at(change.at(0))}, {"path", change.substr(1, blank - 1)}});
        if (blank != std::string::npos) {
            patch.back()["value"] = Json::parse(change.substr(blank + 1));
        }
    }
    return patch;
}

/// "name=Office, nth=2"; a text that is empty or has control characters is quoted.
std::map<std::string, std::string> ContextOf(const std::string& where) {
    std::map<std::string, std::string> context;
    for (const std::string& part : Split(where, ", ")) {
        const std::size_t sign = part.find('=');
        const std::string value = part.substr(sign + 1);
        context[part.substr(0, sign)] =
            value[0] == '"' ? Json::parse(value).get<std::string>() : value;
    }
    return context;
}

/// "Fail 5, NullResult", of a call that is still open.
std::vector<PlannedFault> WaysOf(const std::string& ways) {
    std::vector<PlannedFault> faults;
    for (const std::string& way : Split(ways, ", ")) {
        const std::vector<std::string> words = Split(way, " ");
        faults.push_back(
            {"", 1, words[0], unsigned(std::stoul(words.size() > 1 ? words[1] : "0"))});
    }
    return faults;
}

FaultRow ParseRow(const std::string& line, const std::map<std::string, Json>& named) {
    FaultRow row;
    row.text = line;
    const std::vector<std::string> columns = Split(line, " | ");
    const std::vector<std::string> callAndWhere = Split(columns.at(0), " with ");
    row.call = callAndWhere[0];
    if (callAndWhere.size() > 1) {
        row.where = ContextOf(callAndWhere[1]);
    }
    if (columns.at(1) == "cannot fail") {
        return row;
    }
    row.ways = WaysOf(columns[1]);
    if (columns.at(2).rfind("ends ", 0) == 0) {
        row.ends = columns[2].substr(5);
    } else {
        row.patch = PatchOf(columns[2], named);
    }
    return row;
}

}  // namespace

bool FaultRow::Fits(const Call& made) const {
    return call == made.function &&
           std::all_of(where.begin(), where.end(), [&](const auto& wanted) {
               if (wanted.first == "nth") {
                   return wanted.second == std::to_string(made.nth);
               }
               const auto found = made.context.find(wanted.first);
               return found != made.context.end() && wanted.second == found->second;
           });
}

FaultGroup::FaultGroup(const std::string& name) {
    std::ifstream file(kFolder / "expected" / (name + ".txt"), std::ios::binary);
    std::map<std::string, Json> named{{"nothing", Json::array()}};
    std::string line;
    const auto parse = [&] {
        if (line.rfind(kOnlyForGnu, 0) == 0) {
            line = simulation::runtime::kIsMicrosofts ? "" : line.substr(kOnlyForGnu.size());
        }
        const std::size_t colon = line.find(": ");
        if (line.rfind("scenario ", 0) == 0) {
            scenario = line.substr(9);
        } else if (line.find(" | ") != std::string::npos) {
            rows.push_back(ParseRow(line, named));
        } else if (!line.empty() && line[0] != '#') {
            named[line.substr(0, colon)] = PatchOf(line.substr(colon + 2), named);
        }
    };
    try {
        while (std::getline(file, line)) {
            parse();
        }
    } catch (const std::exception& error) {
        throw std::runtime_error(name + ".txt: " + error.what() + " in: " + line);
    }
}

std::vector<FaultRun> FaultGroup::Runs(const Scenario& of, const std::vector<Call>& calls) const {
    std::vector<FaultRun> runs;
    std::set<std::string> taken;
    for (const FaultRow& row : rows) {
        const std::size_t before = runs.size();
        for (PlannedFault fault : row.ways) {
            fault.call = row.call;
            const auto add = [&](unsigned nth) {
                fault.nth = nth;
                if (fault.call == "malloc" || taken.insert(Describe(fault)).second) {
                    runs.push_back(
                        {fault,
                         row.ends.empty() ? OfThisRuntime(of.outcome.patch(row.patch)) : Json(),
                         row.ends});
                }
            };
            if (row.call == "malloc") {
                add(1);
            }
            for (const Call& call : calls) {
                if (row.Fits(call)) {
                    add(call.nth);
                }
            }
        }
        if (runs.size() == before && !row.ways.empty()) {
            throw std::runtime_error("no call fits the row " + row.text);
        }
    }
    return runs;
}

bool FaultGroup::Covers(const Call& call) const {
    return std::any_of(rows.begin(), rows.end(),
                       [&](const FaultRow& row) { return row.Fits(call); });
}

bool FaultGroup::Names(const std::string& function) const {
    return std::any_of(rows.begin(), rows.end(),
                       [&](const FaultRow& row) { return row.call == function; });
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
    scenario.outcome =
        OfThisRuntime(document.contains("outcomeOf") ? LoadScenario(document["outcomeOf"]).outcome
                                                     : document.at("outcome"));
    return scenario;
}

std::string Describe(const PlannedFault& fault) {
    return "\"" + fault.call + "\" " + std::to_string(fault.nth) + " " + fault.way + " " +
           std::to_string(fault.number);
}

std::string RowFor(const PlannedFault& fault, const Json& normal, const Json& outcome) {
    std::string changes;
    for (const Json& change : Json::diff(normal, outcome)) {
        const auto sign = std::find_if(
            kOperations.begin(), kOperations.end(),
            [&](const auto& operation) { return operation.second == change.at("op"); });
        changes += (changes.empty() ? "" : "; ") + std::string(1, sign->first) +
                   change.at("path").get<std::string>();
        changes += change.contains("value") ? " " + change.at("value").dump() : "";
    }
    return fault.call + " with nth=" + std::to_string(fault.nth) + " | " + fault.way + " " +
           std::to_string(fault.number) + " | " + (changes.empty() ? "nothing" : changes);
}

}  // namespace faults_test
