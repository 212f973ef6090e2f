// CloseHandle, for every kind of simulated handle and for real ones that the ledger knows.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallHandleFakes(ImportRedirection& redirection);

}  // namespace simulation
