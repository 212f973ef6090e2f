// Keeping this library mapped while one of its threads runs.
#pragma once

#include <windows.h>

#include "util/scoped_handle.h"

/// Takes a counted reference to the module that this function is part of. While it is held, the
/// host's FreeLibrary does not unmap the code under a running thread. Empty when the system
/// refuses.
ScopedModule ReferenceThisModule();

/// Gives the reference, which is not empty, back and ends the calling thread, without returning
/// into code that may be unmapped by then. Destructors of the caller's objects do not run.
[[noreturn]] void ReleaseThisModuleAndExitThread(ScopedModule reference, DWORD exitCode);
