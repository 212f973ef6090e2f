// One life of the plug-in from load to unload, with every kind of work that it does.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simulation/machine.h"

namespace faults_test {

/// Keeps the order of members, which matters for an event's fields.
using Json = nlohmann::ordered_json;

/// What a scenario plays on.
struct Scene {
    simulation::Machine machine;
    simulation::Device arriving;  ///< Plugged in while the plug-in runs.
    bool managerIsLoaded = true;  ///< By the host, before the plug-in.
};

/// A call of the operating system or the suite, and how it fails. `way` is the name of a
/// simulation::FaultVariant, or for a call of the suite one of those in suite_calls.h; `number` is
/// the error number or the size. The way "Refuse" of "malloc" fails every block of `number` bytes,
/// "RefuseAtStart" until the reports are scheduled.
struct PlannedFault {
    std::string call;
    unsigned nth = 1;  ///< Among the scenario's calls of this function, from 1.
    std::string way;
    unsigned number = 0;
};

/// A call that the plug-in made.
struct Call {
    std::string function;
    unsigned nth = 1;
    /// Its arguments and where it came from: "thread" (host, loop, monitor, firmware), and on the
    /// monitor's thread "fill" (HID, all, arrival).
    std::map<std::string, std::string> context;
};

/// What became of a scenario:
///     steps     what the host saw, by step
///     lines     the log lines by thread, each with its level in front
///     events    by id, in order; an event's fields in order, device lists as JSON
///     registry  the two values that the plug-in keeps; a time stamp reads "now"
///     left      resources that were not given back, and wrong returns
///     heap      "sound" where the system finds it so
///     keptBlocks  blocks of memory not given back: g++'s runtime keeps 6 for a life, and
///                 more once an exception was thrown
struct Played {  // NOLINT(bugprone-exception-escape): Json's order copies when it moves
    Json outcome;
    std::vector<Call> calls;
    bool faultsWereMet = false;  ///< All of them.
};

/// At most one of the faults may be of malloc.
Played PlayScenario(const Scene& scene, const std::vector<PlannedFault>& faults = {});

}  // namespace faults_test
