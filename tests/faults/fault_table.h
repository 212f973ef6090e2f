// The table of what each failure does: the files in scenarios/ and expected/.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "faults/scenario.h"

namespace faults_test {

/// A file of scenarios/:
///     machine          changes to everything.json (a JSON patch)
///     managerIsLoaded  false where the plug-in has to load the plug-in manager itself
///     only             the functions whose calls are made to fail here; absent: all
///     outcome          what becomes of it when no call fails
///     outcomeOf        in its place: the scenario that ends alike
struct Scenario {
    std::string name;
    Scene scene;
    std::vector<std::string> only;
    Json outcome;
};

/// One call failing in one way.
struct FaultRun {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    PlannedFault fault;
    Json expected;     ///< The expected outcome; null where the process ends.
    std::string ends;  ///< What the process says when it ends by the fault.
};

/// A row of the table, which FaultGroup explains.
struct FaultRow {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    std::string text;
    std::string call;
    std::map<std::string, std::string> where;
    std::vector<PlannedFault> ways;  ///< None where the call cannot fail.
    Json patch;
    std::string ends;

    bool Fits(const Call& made) const;
};

/// A file of expected/ names a scenario and has one row for each call that may fail in it:
///     OpenPrinterW with name=Office | Fail 5, NullResult | +/lines/monitor/1 "3 fail to ..."
/// The call with what its context has to hold, "nth" included; the ways in which it fails; what
/// becomes of it. A call is taken by the first row that fits and has the way. The changes to the
/// scenario's outcome are a JSON patch in short, with "; " in between: +PATH VALUE adds, =PATH
/// VALUE replaces, -PATH removes. A name stands for the changes behind "NAME: " above the rows;
/// "nothing" is silence with everything delivered. "ends TEXT" stands in their place where the
/// process ends. A call that cannot fail has the way "cannot fail" and the reason. What begins with
/// # is a comment. "g++: " precedes a row whose call or size other compilers' runtimes do not have.
/// The test prints the row for what happened instead.
class FaultGroup {
public:
    /// `name` is the file's name without ending.
    explicit FaultGroup(const std::string& name);

    const std::string& ScenarioName() const { return scenario; }
    /// Throws std::runtime_error naming a row that fits no call.
    std::vector<FaultRun> Runs(const Scenario& of, const std::vector<Call>& calls) const;
    /// Whether some row speaks about the call.
    bool Covers(const Call& call) const;
    /// Whether some row is about this function.
    bool Names(const std::string& function) const;

private:
    std::string scenario;
    std::vector<FaultRow> rows;
};

std::vector<std::string> GroupNames();
/// Functions that no rule is about, with the reasons.
Json LoadNotTried();
Scenario LoadScenario(const std::string& name);

/// For messages, and for the probe that replays it.
std::string Describe(const PlannedFault& fault);
/// The row that lays down what became of the fault.
std::string RowFor(const PlannedFault& fault, const Json& normal, const Json& outcome);

}  // namespace faults_test
