// The times in records of events and in log files.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// Milliseconds since 1970, UTC.
std::int64_t UtcNow();

/// Reads "2026-11-20T18:54:03.120Z"; nothing when the text is not of that form.
std::optional<std::int64_t> ParseUtcTime(std::string_view text);

/// Reads "2026-11-20 19:54:03.120" as local time of this computer's time zone.
std::optional<std::int64_t> ParseLocalTime(std::string_view text);

}  // namespace host
