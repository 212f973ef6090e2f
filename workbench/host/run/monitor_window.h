// The window through which the plug-in learns of devices.
#pragma once

#include "simulation/machine.h"

namespace host {

/// Whether this process has the window of the plug-in's monitor thread now.
bool HasMonitorWindow();

/// Plays the system's part when a device comes or goes: tells the window, if there is one, of the
/// device's interfaces and waits until it has dealt with that.
void AnnounceDevice(const simulation::Device& device, bool arrived);

}  // namespace host
