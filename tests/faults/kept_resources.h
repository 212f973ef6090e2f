// What the plug-in, with the compiler's runtime in it, took of its process and never gave back.
#pragma once

#include <cstddef>

#include "simulation/import_redirection.h"

namespace faults_test {

/// Follows from here on the library's malloc, calloc, realloc and free, with them the operators new
/// and delete, and what mingw-w64's threads and mutexes take: CreateEventA, DuplicateHandle and
/// TlsAlloc, which the plug-in's own code does not call. Installed behind all other fakes.
void FollowKeptResources(simulation::ImportRedirection& redirection);

/// Blocks that the library has taken since it was mapped and not given back.
std::size_t KeptBlocks();

/// How many of the runtime's handles were not closed, in all lives so far.
std::size_t KeptRuntimeHandles();

/// Frees the runtime's indexes of thread-local storage, of which a process has 1088, so that it can
/// go on with more lives than these. For when the library is no longer mapped.
void FreeRuntimeTlsIndexes();

}  // namespace faults_test
