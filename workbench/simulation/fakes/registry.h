// The monitors' EDID values, answered from the machine's display: RegOpenKeyExA, RegQueryValueExA,
// RegCloseKey.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallRegistryFakes(ImportRedirection& redirection);

}  // namespace simulation
