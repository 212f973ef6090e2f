#include "simulation/fakes/accounts.h"
#include "simulation/fakes/config_manager.h"
#include "simulation/fakes/device_notifications.h"
#include "simulation/fakes/display_config.h"
#include "simulation/fakes/display_settings.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/hid.h"
#include "simulation/fakes/modules.h"
#include "simulation/fakes/print_spooler.h"
#include "simulation/fakes/registry.h"
#include "simulation/fakes/sessions.h"
#include "simulation/fakes/setup_api.h"
#include "simulation/fakes/threads.h"
#include "simulation/fakes/time_sources.h"
#include "simulation/fakes/version_info.h"
#include "simulation/fakes/window_calls.h"
#include "simulation/simulated_machine.h"

namespace simulation {

const std::vector<FakeFamily>& AllFakeFamilies() {
    static const std::vector<FakeFamily> families{
        InstallAccountFakes,
        InstallConfigManagerFakes,
        InstallDeviceNotificationFakes,
        InstallDisplayConfigFakes,
        InstallDisplaySettingsFakes,
        InstallHandleFakes,
        InstallHeapFakes,
        InstallHidFakes,
        InstallModuleFakes,
        InstallPrintSpoolerFakes,
        InstallRegistryFakes,
        InstallSessionFakes,
        InstallSetupApiFakes,
        InstallThreadFakes,
        InstallTimeFakes,
        InstallVersionInfoFakes,
        InstallWindowFakes,
    };
    return families;
}

}  // namespace simulation
