// Device node status, answered from the machine's devices: CM_Get_DevNode_Status.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallConfigManagerFakes(ImportRedirection& redirection);

}  // namespace simulation
