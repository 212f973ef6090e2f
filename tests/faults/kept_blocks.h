// Memory that the plug-in took and never gave back.
#pragma once

#include <cstddef>

#include "simulation/import_redirection.h"

namespace faults_test {

/// Follows the library's malloc, calloc, realloc and free, and with them the operators new and
/// delete, from here on. Installed behind the heap's other fakes.
void FollowBlocks(simulation::ImportRedirection& redirection);

/// Blocks that the library has taken since it was mapped and not given back.
std::size_t KeptBlocks();

}  // namespace faults_test
