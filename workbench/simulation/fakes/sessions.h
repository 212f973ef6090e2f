// Logon sessions and identities, answered from the machine's logons: WTSGetActiveConsoleSessionId,
// WTSEnumerateSessionsW, WTSFreeMemory, WTSQueryUserToken, ImpersonateLoggedOnUser, RevertToSelf,
// GetUserNameExW. Accounts and SIDs are in accounts.h.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallSessionFakes(ImportRedirection& redirection);

}  // namespace simulation
