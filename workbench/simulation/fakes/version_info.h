// Version resources, answered from the machine's file versions: GetFileVersionInfoSizeW,
// GetFileVersionInfoW, VerQueryValueW. No other file exists.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallVersionInfoFakes(ImportRedirection& redirection);

}  // namespace simulation
