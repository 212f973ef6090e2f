// Device sets of SetupAPI, answered from the machine's devices: SetupDiGetClassDevsW,
// SetupDiEnumDeviceInfo, SetupDiGetDeviceInstanceIdW, SetupDiGetDevicePropertyW,
// SetupDiEnumDeviceInterfaces, SetupDiGetDeviceInterfaceDetailW, SetupDiDestroyDeviceInfoList.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallSetupApiFakes(ImportRedirection& redirection);

}  // namespace simulation
