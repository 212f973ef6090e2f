// The system that the device sources ask: the workbench's simulation, which also tells lies here.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

#include "fuzz/property.h"
#include "simulation/fakes/families.h"
#include "simulation/simulated_machine.h"

namespace fuzz_sources {

/// This program runs on `machine` from now on. It keeps no journal: that takes longer than all the
/// rest.
inline simulation::World& RunOn(simulation::Machine machine) {
    using namespace simulation;
    static SimulatedMachine system(
        GetModuleHandleW(nullptr), Machine(),
        {InstallDisplayFakes, InstallHandleFakes, InstallHidFakes, InstallPrintSpoolerFakes,
         InstallRegistryFakes, InstallSetupApiFakes, InstallSetupApiInterfaceFakes});
    system.Become(std::move(machine));
    system.world().journal.Stop();
    return system.world();
}

/// Several values, for messages.
template <class... Values>
std::string Shown(const Values&... values) {
    return testing::PrintToString(std::tuple(values...));
}

inline void RequireAllReturned(const simulation::World& world) {
    fuzz::Require(world.ledger.Balanced(), "every resource is given back once",
                  testing::PrintToString(world.ledger));
}

}  // namespace fuzz_sources
