#include "simulation/simulated_machine.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>

#include "simulation/fakes/families.h"

namespace simulation {
namespace {

std::atomic<World*> currentWorld{nullptr};

}  // namespace

World::World(Machine described) : machine(std::move(described)), clock(machine.steadyNanoseconds) {}

void World::Plug(Device device) {
    const auto lock = Lock();
    machine.devices.push_back(std::move(device));
}

Device World::Unplug(const std::wstring& instanceId) {
    const auto lock = Lock();
    const auto gone =
        std::find_if(machine.devices.begin(), machine.devices.end(),
                     [&](const Device& device) { return device.instanceId == instanceId; });
    if (gone == machine.devices.end()) {
        return {};
    }
    Device device = std::move(*gone);
    machine.devices.erase(gone);
    return device;
}

const std::vector<FakeFamily>& AllFakeFamilies() {
    static const std::vector<FakeFamily> families{
        InstallAccountFakes,
        InstallDisplayFakes,
        InstallHandleFakes,
        InstallHeapFakes,
        InstallHidFakes,
        InstallModuleFakes,
        InstallPrintSpoolerFakes,
        InstallRegistryFakes,
        InstallSessionFakes,
        InstallSetupApiFakes,
        InstallSetupApiInterfaceFakes,
        InstallThreadFakes,
        InstallTimeFakes,
        InstallVersionInfoFakes,
        InstallWindowFakes,
    };
    return families;
}

World* CurrentWorld() { return currentWorld; }

bool CallsAreNoted() {
    const World* const world = currentWorld;
    return world == nullptr || world->journal.IsKept();
}

SimulatedMachine::Reign::Reign(World& world) {
    World* none = nullptr;
    if (!currentWorld.compare_exchange_strong(none, &world)) {
        throw std::logic_error("another simulated machine is in force");
    }
}

SimulatedMachine::Reign::~Reign() { currentWorld = nullptr; }

void SimulatedMachine::Reign::PassTo(World& world) { currentWorld = &world; }

SimulatedMachine::SimulatedMachine(HMODULE module, Machine machine,
                                   const std::vector<FakeFamily>& families)
    : theWorld(std::make_unique<World>(std::move(machine))), reign(*theWorld), redirection(module) {
    for (const FakeFamily install : families) {
        install(redirection);
    }
}

void SimulatedMachine::Become(Machine machine) {
    auto next = std::make_unique<World>(std::move(machine));
    reign.PassTo(*next);
    theWorld = std::move(next);
}

}  // namespace simulation
