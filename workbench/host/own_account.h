// The account that the host runs as.
#pragma once

#include <string>

namespace host {

/// SID text of the process's user. Throws HostError when the system does not tell.
std::wstring OwnSid();

}  // namespace host
