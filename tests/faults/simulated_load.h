// The built plug-in on a simulated machine from before its entry point until it is unmapped.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>

#include "simulation/simulated_machine.h"

namespace faults_test {

/// Loads TallyportPlugin.dll from beside the program. The machine is in force for everything that
/// the library does while it is mapped, its entry point and its static objects included. One at a
/// time in a process.
class SimulatedLoad {
public:
    using WorldUser = std::function<void(simulation::World&)>;

    /// `afterMapping` runs before the library does anything, `beforeUnmapping` after it did
    /// everything, on whichever thread lets the last reference go. Both under the loader's lock.
    /// When the process ends instead, everything stays as it is.
    SimulatedLoad(const simulation::Machine& described, WorldUser afterMapping,
                  WorldUser beforeUnmapping);
    /// Gives back all references that are left, whoever forgot them.
    ~SimulatedLoad();
    SimulatedLoad(const SimulatedLoad&) = delete;
    SimulatedLoad& operator=(const SimulatedLoad&) = delete;

    /// Null when the library did not load.
    HMODULE Module() const { return module; }
    /// Throws std::bad_optional_access when the library is not mapped.
    simulation::World& World() { return simulated.value().world(); }

    /// Gives one reference of the host's back; true when that unmapped the library.
    bool Release();
    bool IsMapped() const;

private:
    static void CALLBACK OnLoaderNotification(ULONG reason, const void* data, void* context);
    void OnMapped(HMODULE base);
    void OnUnmapped();

    const simulation::Machine& machine;
    WorldUser onMapped;
    WorldUser onUnmapped;
    void* cookie = nullptr;
    HMODULE module = nullptr;
    std::optional<simulation::SimulatedMachine> simulated;
};

}  // namespace faults_test
