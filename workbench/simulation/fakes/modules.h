// Module loading: the real system does it, the journal and the fault plan see it. Module references
// are in the ledger: GetModuleHandleW, GetModuleHandleExW, GetModuleFileNameW,
// PathCchRemoveFileSpec, LoadLibraryW, GetProcAddress, FreeLibrary, FreeLibraryAndExitThread.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallModuleFakes(ImportRedirection& redirection);

}  // namespace simulation
