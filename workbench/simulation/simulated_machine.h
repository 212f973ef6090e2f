// A simulated machine in force: the world that the fakes of OS calls answer from.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>
#include <vector>

#include "simulation/call_journal.h"
#include "simulation/fault_plan.h"
#include "simulation/import_redirection.h"
#include "simulation/machine.h"
#include "simulation/resource_ledger.h"
#include "simulation/simulated_clock.h"
#include "simulation/slim_mutex.h"

namespace simulation {

/// Everything that the fakes share. Journal, ledger, faults and clock may be used from any thread;
/// the machine and what the fake families remember only under the lock.
class World {
public:
    explicit World(Machine described);

    /// Nobody else reads or changes machine and family states while the result lives.
    std::unique_lock<SlimMutex> Lock() { return std::unique_lock(mutex); }

    /// Changes the machine under the lock: `world.Change([](Machine& machine) { ... });`
    template <class Edit>
    void Change(Edit edit) {
        const auto lock = Lock();
        edit(machine);
    }

    /// Device arrival and removal. They send no notification: whoever plays the system's part does.
    void Plug(Device device);
    /// The device that went; an empty one when none has this instance id.
    Device Unplug(const std::wstring& instanceId);

    /// What a family of fakes remembers between calls (open sets, tokens, ...): one default
    /// constructed `State` for each type. Call and use it under the lock only.
    template <class State>
    State& FamilyState() {
        std::shared_ptr<void>& state = familyStates[typeid(State)];
        if (state == nullptr) {
            state = std::make_shared<State>();
        }
        return *static_cast<State*>(state.get());
    }

    Machine machine;
    CallJournal journal;
    ResourceLedger ledger;
    FaultPlan faults;
    SimulatedClock clock;

private:
    SlimMutex mutex;
    std::unordered_map<std::type_index, std::shared_ptr<void>> familyStates;
};

/// The world of the SimulatedMachine in force, or null.
World* CurrentWorld();

/// Redirects those functions of one family that the module imports.
using FakeFamily = void (*)(ImportRedirection& redirection);

/// Every family there is; see fakes/.
const std::vector<FakeFamily>& AllFakeFamilies();

/// While it lives, `module` sees the given machine instead of the real one. There is one at a time
/// in a process. Before its end the module's threads have to be out of system calls, and `module`
/// must still be loaded.
class SimulatedMachine {
public:
    /// Throws std::logic_error when another one is in force.
    SimulatedMachine(HMODULE module, Machine machine,
                     const std::vector<FakeFamily>& families = AllFakeFamilies());
    SimulatedMachine(const SimulatedMachine&) = delete;
    SimulatedMachine& operator=(const SimulatedMachine&) = delete;

    World& world() { return *theWorld; }

    /// Is another machine from now on, in a new world. Nobody may be inside a call.
    void Become(Machine machine);

private:
    /// Makes a world the current one.
    class Reign {
    public:
        explicit Reign(World& world);
        ~Reign();
        Reign(const Reign&) = delete;
        Reign& operator=(const Reign&) = delete;

        void PassTo(World& world);
    };

    // The imports are put back before the world that the fakes ask is gone.
    std::unique_ptr<World> theWorld;
    Reign reign;
    ImportRedirection redirection;
};

}  // namespace simulation
