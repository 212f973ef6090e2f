// Handles that the compiler's runtime, which is a part of the plug-in, keeps when the plug-in is
// unloaded.
#pragma once

#include <cstddef>

#include "simulation/import_redirection.h"

namespace faults_test {

/// Follows the handles that the library opens with CreateEventA and DuplicateHandle, from here on.
/// Its own code calls neither; mingw-w64's threads and mutexes do.
void FollowRuntimeHandles(simulation::ImportRedirection& redirection);

/// How many of them were not closed, in all lives so far.
std::size_t KeptRuntimeHandles();

}  // namespace faults_test
