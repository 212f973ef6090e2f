// HID devices, answered from the machine's interfaces: CreateFileW of their paths (every other path
// is the real system's), HidD_GetProductString, HidD_GetManufacturerString.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallHidFakes(ImportRedirection& redirection);

}  // namespace simulation
