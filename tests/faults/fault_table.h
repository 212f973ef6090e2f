// The table of what is laid down for each failure: the files in scenarios/ and expected/.
#pragma once

#include <string>
#include <vector>

#include "faults/scenario.h"

namespace faults_test {

/// A file of scenarios/:
///     machine          changes to everything.json (a JSON patch)
///     managerIsLoaded  false where the plug-in has to load the plug-in manager itself
///     only             the functions whose calls are made to fail here; absent: all
///     outcome          what becomes of it when no call fails
struct Scenario {
    std::string name;
    Scene scene;
    std::vector<std::string> only;
    Json outcome;
};

/// One call failing in one way.
struct FaultRun {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    PlannedFault fault;
    Json expected;     ///< The outcome that is laid down; null where the process ends.
    std::string ends;  ///< What the process says when it ends by the fault, as laid down.
};

/// A file of expected/ holds rules for the calls of one scenario:
///     {"call": "OpenPrinterW", "where": {"name": "Office"}, "ways": [["Fail", 5], ["NullResult"]],
///      "expect": [["add", "/lines/monitor/1", "3 fail to open printer(...)"], ...]}
/// `where` is what the call's context has to hold, "nth" included. A call is taken by the first
/// rule that fits and has the way. `expect` changes the scenario's outcome, in the manner of a JSON
/// patch; [] is silence with everything delivered. `ends` stands in its place where the process
/// ends. A call that cannot fail has a reason in `cannotFail` in place of both. ["use", NAME] in
/// `expect` stands for the changes of that name in the file's `named`.
class FaultGroup {
public:
    /// `name` is the file's name without ending.
    explicit FaultGroup(const std::string& name);

    const std::string& ScenarioName() const { return scenario; }
    /// Throws std::runtime_error naming a rule that fits no call.
    std::vector<FaultRun> Runs(const Scenario& of, const std::vector<Call>& calls) const;
    /// Whether some rule speaks about the call.
    bool Covers(const Call& call) const;
    /// Whether some rule is about this function.
    bool Names(const std::string& function) const;

private:
    std::string scenario;
    Json named;
    Json rules;
};

std::vector<std::string> GroupNames();
/// Functions that no rule is about, with the reasons.
Json LoadNotTried();
Scenario LoadScenario(const std::string& name);

/// For messages, and for the probe that replays it.
std::string Describe(const PlannedFault& fault);

}  // namespace faults_test
