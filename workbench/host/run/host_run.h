// The host's acts that load something: a run of the plug-in, or a look at the device inventory.
#pragma once

#include "host/options/options.h"

namespace host {

/// Validates everything that the options name, then loads the plug-in, lets it run and takes it
/// down again. Throws BadInput and RunFailed; what was started by then is taken down.
void RunHost(const Options& options);

/// --list-devices: shows what the plug-in's inventory would hold here, or on the described machine.
/// The plug-in is not loaded and nothing is changed. Throws BadInput and RunFailed.
void ListDevices(const Options& options);

}  // namespace host
