// Accounts and their SIDs, answered from the machine's logons: LookupAccountNameW,
// ConvertSidToStringSidW, LocalFree.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallAccountFakes(ImportRedirection& redirection);

}  // namespace simulation
