// Why the host gives up.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "common/bad_input.h"

namespace host {

/// What the process returns.
enum class ExitCode {
    Done = 0,       ///< Everything ran in order.
    RunFailed = 1,  ///< The plug-in did not load, start or stop as it should.
    BadInput = 2,   ///< An option, a file or the installation is wrong; nothing was started.
};

using workbench::BadInput;

/// The plug-in did not run as it should. One line as well.
class RunFailed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// "Access denied (error 5)"; the number alone when the system has no text for it.
std::string Win32ErrorText(DWORD error);

}  // namespace host
