// Tests of the device sources on a simulated machine.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "simulation/simulated_machine.h"
#include "unit/device_reporter/device_test.h"

namespace device_tests {

/// The families of fakes that the device sources ask.
const std::vector<simulation::FakeFamily>& DeviceFakeFamilies();

/// This program's own calls see a simulated machine, empty at first. At the end of each test every
/// resource is back and every planned fault was met.
class MachineTest : public DeviceTest {
protected:
    void TearDown() override;

    /// The functions called so far, in order.
    std::vector<std::string> CalledFunctions() const { return world.journal.Names(); }
    std::vector<simulation::JournalEntry> Calls(std::string_view function) const {
        return world.journal.Calls(function);
    }
    /// One argument of each call of a function, in order.
    std::vector<std::string> Arguments(std::string_view function, std::string_view name) const;
    /// The `call`th call of `function` from now on, counted from 1, fails.
    void Fail(std::string_view function, unsigned call, DWORD error,
              simulation::FaultVariant variant = simulation::FaultVariant::Fail) {
        world.faults.FailCall(function, call, error, variant);
    }

    simulation::SimulatedMachine simulated{GetModuleHandleW(nullptr), simulation::Machine{},
                                           DeviceFakeFamilies()};
    simulation::World& world = simulated.world();
    simulation::Machine& machine = world.machine;
};

}  // namespace device_tests
