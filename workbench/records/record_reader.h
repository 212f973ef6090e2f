// Reads what an earlier run wrote with --events and --log.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "records/record.h"

namespace records {

/// Reads "2026-11-20T18:54:03.120Z" as milliseconds since 1970; nothing when the text is not of
/// that form.
std::optional<std::int64_t> ParseUtcTime(std::string_view text);

/// The same of "2026-11-20 19:54:03.120", a local time of this computer's time zone.
std::optional<std::int64_t> ParseLocalTime(std::string_view text);

/// The events of a record, one JSON object per line, in its order. Blank lines are passed over.
/// Throws BadInput naming `path` and the line.
std::vector<RecordedEvent> ParseEventRecord(std::string_view text, std::string_view path);

/// The lines of a log file. Its local times are taken for those of this computer's time zone.
/// Throws BadInput naming `path` and the line.
std::vector<RecordedLine> ParseLog(std::string_view text, std::string_view path);

}  // namespace records
