// Two calls of one life made to fail, chosen at random. What then has to happen differs from pair
// to pair; what must not happen is the same for all.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "faults/fault_table.h"
#include "fuzz/random.h"
#include "reliability/options.h"

namespace {

using namespace reliability_test;
using faults_test::Describe;
using faults_test::Json;
using faults_test::PlannedFault;

/// What may fail in a scenario.
struct Field {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    faults_test::Scenario scenario;
    std::vector<faults_test::Call> calls;
    std::vector<PlannedFault> faults;
    /// By function: how many resources a failure of it leaves, those that it does not take back.
    std::map<std::string, std::size_t> left;
};

/// Of all runs of the fault table. Left out are failures that end the process, at whichever of the
/// function's calls: the other failure of a pair may shift the calls' numbers.
std::vector<Field> AllFields() {
    std::map<std::string, Field> fields;
    std::vector<std::pair<Field*, faults_test::FaultRun>> runs;
    std::set<std::string> ending;
    const auto way = [](PlannedFault fault) {
        fault.nth = 0;
        return Describe(fault);
    };
    for (const std::string& name : faults_test::GroupNames()) {
        const faults_test::FaultGroup group(name);
        Field& field = fields[group.ScenarioName()];
        if (field.calls.empty()) {
            field.scenario = faults_test::LoadScenario(group.ScenarioName());
            field.calls = faults_test::PlayScenario(field.scenario.scene).calls;
        }
        for (faults_test::FaultRun& run : group.Runs(field.scenario, field.calls)) {
            if (!run.ends.empty()) {
                ending.insert(way(run.fault));
            }
            runs.emplace_back(&field, std::move(run));
        }
    }
    for (const auto& [field, run] : runs) {
        // Memory fails for every block of a size, wherever it is asked for.
        if (run.fault.call != "malloc" && ending.count(way(run.fault)) == 0) {
            field->faults.push_back(run.fault);
            std::size_t& left = field->left[run.fault.call];
            left = std::max(left, run.expected.at("left").size());
        }
    }
    std::vector<Field> all;
    for (auto& [name, field] : fields) {
        all.push_back(std::move(field));
    }
    return all;
}

/// Whether a life without failures sends such an event: with these fields or more.
bool IsUsual(const Json& event, const Json& usual) {
    const auto fields = event.items();
    return std::all_of(fields.begin(), fields.end(),
                       [&](const auto& field) { return usual.contains(field.key()); });
}

/// Empty where nothing happened that must not.
std::string Complaint(const Json& normal, const Json& outcome, std::size_t mayBeLeft) {
    std::string complaint;
    for (const auto& step : outcome.at("steps").items()) {
        complaint += step.value() == "hangs" ? step.key() + " hangs; " : "";
    }
    if (outcome.at("left").size() > mayBeLeft) {
        complaint += "left: " + outcome.at("left").dump() + "; ";
    }
    if (outcome.at("keptBlocks") > normal.at("keptBlocks")) {
        complaint += "keeps " + outcome.at("keptBlocks").dump() + " blocks; ";
    }
    if (outcome.at("heap") != "sound" || !outcome.at("warnings").empty()) {
        complaint += "heap and warnings: " + outcome.dump() + "; ";
    }
    for (const auto& sent : outcome.at("events").items()) {
        const Json usual = normal.at("events").value(sent.key(), Json::array());
        const bool isUsual =
            sent.value().size() <= usual.size() &&
            std::all_of(sent.value().begin(), sent.value().end(),
                        [&](const Json& event) { return IsUsual(event, usual.front()); });
        complaint += isUsual ? "" : "sends " + sent.key() + ": " + sent.value().dump() + "; ";
    }
    return complaint;
}

TEST(PairsOfFailingCalls, BreakNothingLeaveNothingAndSendNothingNew) {
    const std::vector<Field> fields = AllFields();
    std::vector<const Field*> fieldOfFault;
    for (const Field& field : fields) {
        fieldOfFault.insert(fieldOfFault.end(), field.faults.size(), &field);
    }
    fuzz::Random random(TheOptions().seed, 2);
    unsigned bothMet = 0;
    unsigned wrong = 0;
    for (unsigned tried = 0; tried < TheOptions().pairs; ++tried) {
        const Field& field = *random.Pick(fieldOfFault);
        const PlannedFault first = random.Pick(field.faults);
        PlannedFault second = random.Pick(field.faults);
        while (second.call == first.call && second.nth == first.nth) {
            second = random.Pick(field.faults);
        }
        // Before it is played, for a life that crashes or hangs.
        std::printf("faults_probe %s %s %s\n", field.scenario.name.c_str(), Describe(first).c_str(),
                    Describe(second).c_str());
        std::fflush(stdout);
        const faults_test::Played played =
            faults_test::PlayScenario(field.scenario.scene, {first, second});
        bothMet += played.faultsWereMet ? 1 : 0;
        const std::string complaint =
            Complaint(field.scenario.outcome, played.outcome,
                      field.left.at(first.call) + field.left.at(second.call));
        if (!complaint.empty()) {
            ++wrong;
            ADD_FAILURE() << complaint;
        }
    }
    std::printf("seed %llu: %u pairs, both calls were made in %u\n",
                static_cast<unsigned long long>(TheOptions().seed), TheOptions().pairs, bothMet);
    AddRow("pairs of calls made to fail in one life", TheOptions().pairs, wrong);
}

}  // namespace
