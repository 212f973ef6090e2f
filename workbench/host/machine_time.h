// Spans of machine time as people write and read them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Reads "3d 04:00", "3d", "04:00:30", "36h" or "1d 2h 30m 5s"; nothing when it is none of these.
/// A clock time comes last and is below 24:00:00; each unit occurs once, the largest first.
std::optional<std::chrono::seconds> ParseMachineTime(std::string_view text);

/// "3d 04:00:00".
std::string FormatMachineTime(std::chrono::seconds time);

}  // namespace host
