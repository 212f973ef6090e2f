// The families of fakes. Each function redirects those calls of its family that the module imports;
// the table in it names them.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

// Answered from the machine.

/// From its logons. An account without a name is the built-in domain.
void InstallAccountFakes(ImportRedirection& redirection);
void InstallDisplayFakes(ImportRedirection& redirection);
/// From its interfaces; every other path of CreateFileW is the real system's.
void InstallHidFakes(ImportRedirection& redirection);
void InstallPrintSpoolerFakes(ImportRedirection& redirection);
/// The monitors' EDID values; every other key is the real system's.
void InstallRegistryFakes(ImportRedirection& redirection);
void InstallSessionFakes(ImportRedirection& redirection);
/// And the status of device nodes.
void InstallSetupApiFakes(ImportRedirection& redirection);
void InstallSetupApiInterfaceFakes(ImportRedirection& redirection);
/// No other file than those of the machine exists.
void InstallVersionInfoFakes(ImportRedirection& redirection);
/// QueryPerformanceCounter, and with it std::chrono::steady_clock, from the simulated clock where
/// it was set.
void InstallTimeFakes(ImportRedirection& redirection);

// Done by the real system; the journal, the fault plan and the ledger see it.

/// CloseHandle, for every kind of simulated handle, too.
void InstallHandleFakes(ImportRedirection& redirection);
/// malloc is in neither journal nor plan, because everything calls it; see heap.h.
void InstallHeapFakes(ImportRedirection& redirection);
void InstallModuleFakes(ImportRedirection& redirection);
void InstallThreadFakes(ImportRedirection& redirection);
/// And the notifications that windows get of devices.
void InstallWindowFakes(ImportRedirection& redirection);

}  // namespace simulation
