// Current display modes, answered from the machine's display: EnumDisplaySettingsW.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallDisplaySettingsFakes(ImportRedirection& redirection);

}  // namespace simulation
