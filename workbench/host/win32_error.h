// What the system says about an error number.
#pragma once

#include <windows.h>

#include <string>

namespace host {

/// "Access denied (error 5)"; the number alone when the system has no text for it.
std::string Win32ErrorText(DWORD error);

}  // namespace host
