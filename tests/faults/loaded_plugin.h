// The built plug-in on a scenario's machine, for programs that live its life in their own ways.
#pragma once

#include <memory>
#include <string>

#include "faults/fault_table.h"
#include "faults/more_fakes.h"
#include "faults/simulated_load.h"
#include "faults/suite_calls.h"
#include "support/plugin_module.h"

namespace faults_test {

/// Nothing fails in it. The monitor's thread waits before its first step until it is let go.
class LoadedPlugin {
public:
    /// `beforeUnmapping` is SimulatedLoad's; without one it notes what is left.
    explicit LoadedPlugin(SimulatedLoad::WorldUser beforeUnmapping = {});

    ZedPlugin& Plugin() { return *plugin; }
    HMODULE Module() const { return load.Module(); }
    simulation::World& World() { return load.World(); }
    bool IsMapped() const { return load.IsMapped(); }

    void LetMonitorGo() { held.LetGo(); }
    /// False when the monitor never waits for messages.
    bool MonitorListens();
    /// Lets plug-in and library go; whether the library was unmapped by that.
    bool Release();
    /// Of a library that is unmapped: empty, or what was left.
    std::string Complaint() const { return left == "[]" ? "" : "left: " + left + "; "; }

    const Scenario scenario = LoadScenario("whole_life");
    SuiteOfScenario suite{scenario.scene.machine};

private:
    const test_support::PluginsManager manager;
    std::string left = "never unmapped";
    SimulatedLoad load;
    const HeldMonitorThread held;
    std::shared_ptr<ZedPlugin> plugin = manager.At(0)->factory();
};

/// What the monitor does when it has dealt with everything so far: "listens", "has ended", "hangs".
std::string MonitorState(simulation::World& world);

}  // namespace faults_test
