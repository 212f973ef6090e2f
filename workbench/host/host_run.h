// A run of the plug-in, from the command line to the summary.
#pragma once

#include "host/options.h"

namespace host {

/// Validates everything that the options name, then loads the plug-in, lets it run and takes it
/// down again. Throws HostError; what was started by then is taken down.
void RunHost(const Options& options);

}  // namespace host
