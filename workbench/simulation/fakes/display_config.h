// Display paths, answered from the machine's display: GetDisplayConfigBufferSizes,
// QueryDisplayConfig, DisplayConfigGetDeviceInfo.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallDisplayConfigFakes(ImportRedirection& redirection);

}  // namespace simulation
