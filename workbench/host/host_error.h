// Why the host gives up.
#pragma once

#include <stdexcept>
#include <string>

namespace host {

/// What the process returns.
enum class ExitCode {
    Done = 0,       ///< Everything ran in order.
    RunFailed = 1,  ///< The plug-in did not load, start or stop as it should.
    BadInput = 2,   ///< An option, a file or the installation is wrong; nothing was started.
};

/// The one line that the person gets to read: what is wrong, where, and what to do about it.
class HostError : public std::runtime_error {
public:
    HostError(ExitCode exitCode, const std::string& line)
        : std::runtime_error(line), code(exitCode) {}

    ExitCode Code() const { return code; }

private:
    ExitCode code;
};

}  // namespace host
