// Tests of the device sources on a simulated machine.
#pragma once

#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "simulation/simulated_machine.h"
#include "support/recorded_log.h"
#include "unit/import_override.h"

namespace device_tests {

using simulation::FaultVariant;
using testing::ElementsAre;
using testing::IsEmpty;
using unit_tests::ImportOverride;

/// Records the log. Every heap of the process is intact at the end of each test.
class DeviceTest : public testing::Test {
protected:
    void TearDown() override;

    /// The lines so far, each as "log 3 text(Function)".
    std::vector<std::string> Log() const { return timeline.Texts(); }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
};

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
              FaultVariant variant = FaultVariant::Fail) {
        world.faults.FailCall(function, call, error, variant);
    }

    simulation::SimulatedMachine simulated{GetModuleHandleW(nullptr), simulation::Machine{},
                                           DeviceFakeFamilies()};
    simulation::World& world = simulated.world();
    simulation::Machine& machine = world.machine;
};

/// A device without properties.
simulation::Device PlainDevice(const std::wstring& instanceId);

/// A path from a source to a monitor with a mode and an EDID of 128 bytes. `number` begins at 1.
simulation::DisplayPath SampleDisplay(unsigned number);

/// Bytes 1, 2, 3, ... with the manufacturer "DEL" at its place.
std::vector<BYTE> SampleEdid(std::size_t size);

/// A queue with a driver whose maker is "Maker" and whose hardware id is "usbprint\maker_5".
simulation::Printer SamplePrinter(const std::wstring& name);

}  // namespace device_tests
