// Windows and messages: the real system does it, the journal, the fault plan and the ledger see it:
// RegisterClassW, UnregisterClassW, CreateWindowExW, DestroyWindow, DefWindowProcW, GetMessageW,
// PostMessageW, PostQuitMessage.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallWindowFakes(ImportRedirection& redirection);

}  // namespace simulation
