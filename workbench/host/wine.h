// Whether this is Windows or Wine.
#pragma once

#include <optional>
#include <string>

namespace host {

/// Version text of the Wine that this process runs under; nothing on Windows.
std::optional<std::string> WineVersion();

}  // namespace host
