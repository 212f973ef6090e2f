// What the compiler's runtime, which is a part of the plug-in, keeps of the process when the
// plug-in is unloaded: handles, and an index of thread-local storage.
#pragma once

#include <cstddef>

#include "simulation/import_redirection.h"

namespace faults_test {

/// Follows the handles that the library opens with CreateEventA and DuplicateHandle, and what it
/// gets from TlsAlloc, from here on. Its own code calls none of them; mingw-w64's threads and
/// mutexes do.
void FollowRuntimeHandles(simulation::ImportRedirection& redirection);

/// How many of the handles were not closed, in all lives so far.
std::size_t KeptRuntimeHandles();

/// Frees the indexes, of which a process has 1088, so that it can go on with more lives than these.
/// For when the library is no longer mapped.
void FreeRuntimeTlsIndexes();

}  // namespace faults_test
