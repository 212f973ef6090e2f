// Each call of the system and the suite that the plug-in makes, failing in each way that it may:
// what is expected of it happens, everything else is delivered, nothing is left behind.
#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <map>

#include "faults/fault_table.h"
#include "simulation/compiler_runtime.h"
#include "support/child_process.h"
#include "support/reliability_record.h"

namespace {

using namespace faults_test;

constexpr char kWhat[] = "calls of system and suite made to fail, one at a time";

/// For a crash, which leaves no time to say more.
std::string runUnderWay;

LONG WINAPI TellCrash(EXCEPTION_POINTERS* /*exception*/) {
    std::fprintf(stderr, "crashed in: faults_probe %s\n", runUnderWay.c_str());
    return EXCEPTION_CONTINUE_SEARCH;
}

void TellAbort(int /*signal*/) {
    std::fprintf(stderr, "ended early in: faults_probe %s\n", runUnderWay.c_str());
}

class WholeProgram : public testing::Environment {
public:
    void SetUp() override {
        SetUnhandledExceptionFilter(&TellCrash);
        std::signal(SIGABRT, &TellAbort);
    }
    void TearDown() override {
        if (runs > 0) {
            record.Add(kWhat, runs, wrong);
            record.Write();
        }
    }

    std::uint64_t runs = 0;
    std::uint64_t wrong = 0;

private:
    test_support::ReliabilityRecord record;
};

WholeProgram& program =
    *static_cast<WholeProgram*>(testing::AddGlobalTestEnvironment(new WholeProgram));

/// A scenario and how it goes when no call fails.
struct Rehearsed {
    Scenario scenario;
    Played normal;
};

const Rehearsed& Rehearse(const std::string& name) {
    static std::map<std::string, Rehearsed> rehearsed;
    auto found = rehearsed.find(name);
    if (found == rehearsed.end()) {
        runUnderWay = name;
        Scenario scenario = LoadScenario(name);
        Played normal = PlayScenario(scenario.scene);
        found = rehearsed.emplace(name, Rehearsed{std::move(scenario), std::move(normal)}).first;
    }
    return found->second;
}

bool IsTried(const Scenario& scenario, const Call& call) {
    return scenario.only.empty() || std::find(scenario.only.begin(), scenario.only.end(),
                                              call.function) != scenario.only.end();
}

/// The same call as in the rehearsal; handles and addresses differ from run to run.
bool FailedWhereMeant(const PlannedFault& fault, const Played& normal, const Played& played) {
    const auto meant = [&](const Call& call) {
        return call.function == fault.call && call.nth == fault.nth;
    };
    const auto before = std::find_if(normal.calls.begin(), normal.calls.end(), meant);
    const auto now = std::find_if(played.calls.begin(), played.calls.end(), meant);
    if (before == normal.calls.end() || now == played.calls.end()) {
        return fault.call == "malloc";
    }
    constexpr std::array kWhere{"thread", "fill", "device", "key", "index", "name", "text", "step"};
    return std::all_of(kWhere.begin(), kWhere.end(), [&](const char* name) {
        const auto left = before->context.find(name);
        const auto right = now->context.find(name);
        // Some arguments are known of a call that succeeds only.
        return left == before->context.end() || right == now->context.end() ||
               left->second == right->second;
    });
}

/// Empty when the run ended as expected, else what was different.
std::string PlayHere(const Rehearsed& rehearsed, const FaultRun& run) {
    const Played played = PlayScenario(rehearsed.scenario.scene, {run.fault});
    if (!played.faultsWereMet) {
        return "the call was not made";
    }
    if (!FailedWhereMeant(run.fault, rehearsed.normal, played)) {
        return "another call was made to fail";
    }
    if (played.outcome == run.expected) {
        return {};
    }
    const Json difference = Json::diff(run.expected, played.outcome);
    return (difference.empty() ? "fields are in another order" : difference.dump(2)) +
           "\nthe row for this: " + RowFor(run.fault, rehearsed.scenario.outcome, played.outcome);
}

/// The failure ends the process: an error of the standard library that nobody catches.
std::string PlayInChild(const std::string& scenario, const FaultRun& run) {
    constexpr DWORD kAborted = 3;
    const auto wide = [](const std::string& text) {
        return std::wstring(text.begin(), text.end());
    };
    const test_support::ChildResult child = test_support::RunChild(
        test_support::ProgramFolder() + L"\\faults_probe.exe",
        {wide(scenario), wide(run.fault.call), std::to_wstring(run.fault.nth), wide(run.fault.way),
         std::to_wstring(run.fault.number)});
    if (!child.finished) {
        return "it hangs";
    }
    const bool tells =
        simulation::runtime::kIsMicrosofts || child.output.find(run.ends) != std::string::npos;
    if (child.exitCode != kAborted || !tells) {
        return "exit code " + std::to_string(child.exitCode) + ", it said:\n" + child.output;
    }
    return {};
}

class FailingCalls : public testing::TestWithParam<std::string> {};

TEST_P(FailingCalls, EndAsLaidDown) {
    const auto begin = std::chrono::steady_clock::now();
    const FaultGroup group(GetParam());
    const Rehearsed& rehearsed = Rehearse(group.ScenarioName());
    const std::vector<FaultRun> runs = group.Runs(rehearsed.scenario, rehearsed.normal.calls);
    std::size_t wrong = 0;
    for (const FaultRun& run : runs) {
        runUnderWay = group.ScenarioName() + " " + Describe(run.fault);
        const std::string difference =
            run.ends.empty() ? PlayHere(rehearsed, run) : PlayInChild(group.ScenarioName(), run);
        if (!difference.empty()) {
            ++wrong;
            ADD_FAILURE() << "faults_probe " << runUnderWay << "\n" << difference;
        }
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf("%-36s %4zu runs in %4.1f s, %zu ended badly\n", GetParam().c_str(), runs.size(),
                seconds.count(), wrong);
    program.runs += runs.size();
    program.wrong += wrong;
}

INSTANTIATE_TEST_SUITE_P(Group, FailingCalls, testing::ValuesIn(GroupNames()),
                         [](const auto& parameter) { return parameter.param; });

class Scenarios : public testing::TestWithParam<std::string> {};

TEST_P(Scenarios, GoAsLaidDownWhileNothingFails) {
    const Rehearsed& rehearsed = Rehearse(GetParam());
    EXPECT_TRUE(rehearsed.normal.outcome == rehearsed.scenario.outcome)
        << Json::diff(rehearsed.scenario.outcome, rehearsed.normal.outcome).dump(2);
}

TEST_P(Scenarios, HaveEveryCallInTheTable) {
    const Rehearsed& rehearsed = Rehearse(GetParam());
    std::vector<FaultGroup> groups;
    for (const std::string& name : GroupNames()) {
        const FaultGroup group(name);
        if (group.ScenarioName() == GetParam()) {
            groups.push_back(group);
        }
    }
    std::size_t tried = 0;
    for (const Call& call : rehearsed.normal.calls) {
        if (IsTried(rehearsed.scenario, call)) {
            ++tried;
            EXPECT_TRUE(std::any_of(groups.begin(), groups.end(),
                                    [&](const FaultGroup& group) { return group.Covers(call); }))
                << call.function << " " << call.nth;
        }
    }
    std::printf("%s: %zu calls, %zu of them made to fail\n", GetParam().c_str(),
                rehearsed.normal.calls.size(), tried);
}

INSTANTIATE_TEST_SUITE_P(Scenario, Scenarios,
                         testing::Values("whole_life", "load_without_manager", "remote_user"),
                         [](const auto& parameter) { return parameter.param; });

}  // namespace
