// One line of a script.
#pragma once

#include <string>
#include <string_view>

#include "host/script.h"

namespace host {

/// Reads {"at": "3d 04:00", "do": "fire_firmware_event", "code": 675}. Throws HostError that begins
/// with `place` and says what to write instead.
Happening ParseScriptLine(std::string_view line, const std::string& place);

}  // namespace host
