// Registrations for device notifications: the real system does it, the journal, the fault plan and
// the ledger see it: RegisterDeviceNotificationW, UnregisterDeviceNotification.
#pragma once

#include "simulation/import_redirection.h"

namespace simulation {

void InstallDeviceNotificationFakes(ImportRedirection& redirection);

}  // namespace simulation
