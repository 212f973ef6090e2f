// --list-devices: the device inventory without a run.
#pragma once

#include "host/options.h"

namespace host {

/// Shows what the plug-in's inventory would hold here, or on the described machine. The plug-in is
/// not loaded and nothing is changed. Throws HostError.
void ListDevices(const Options& options);

}  // namespace host
