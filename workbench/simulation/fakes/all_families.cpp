#include "simulation/fakes/families.h"
#include "simulation/simulated_machine.h"

namespace simulation {

const std::vector<FakeFamily>& AllFakeFamilies() {
    static const std::vector<FakeFamily> families{
        InstallAccountFakes,
        InstallConfigManagerFakes,
        InstallDeviceNotificationFakes,
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

}  // namespace simulation
