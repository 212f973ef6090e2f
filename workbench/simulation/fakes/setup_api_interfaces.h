// Device interfaces of SetupAPI's device sets: SetupDiEnumDeviceInterfaces,
// SetupDiGetDeviceInterfaceDetailW. Part of the family in setup_api.h.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallSetupApiInterfaceFakes(ImportRedirection& redirection);

}  // namespace simulation
