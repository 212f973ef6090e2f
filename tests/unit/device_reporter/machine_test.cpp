#include "unit/device_reporter/machine_test.h"

#include "simulation/fakes/config_manager.h"
#include "simulation/fakes/display_config.h"
#include "simulation/fakes/display_settings.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/hid.h"
#include "simulation/fakes/print_spooler.h"
#include "simulation/fakes/registry.h"
#include "simulation/fakes/setup_api.h"

namespace device_tests {

const std::vector<simulation::FakeFamily>& DeviceFakeFamilies() {
    // Not all families there are: the log's time stamps and the like would stand in the journal.
    static const std::vector<simulation::FakeFamily> families{
        simulation::InstallConfigManagerFakes,
        simulation::InstallDisplayConfigFakes,
        simulation::InstallDisplaySettingsFakes,
        simulation::InstallHandleFakes,
        simulation::InstallHeapFakes,
        simulation::InstallHidFakes,
        simulation::InstallPrintSpoolerFakes,
        simulation::InstallRegistryFakes,
        simulation::InstallSetupApiFakes,
    };
    return families;
}

void MachineTest::TearDown() {
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    for (const simulation::Fault& fault : world.faults.Missed()) {
        ADD_FAILURE() << "no call met the planned fault " << fault;
    }
    DeviceTest::TearDown();
}

std::vector<std::string> MachineTest::Arguments(std::string_view function,
                                                std::string_view name) const {
    std::vector<std::string> values;
    for (const simulation::JournalEntry& call : Calls(function)) {
        values.push_back(call[name]);
    }
    return values;
}

}  // namespace device_tests
