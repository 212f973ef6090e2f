// Reads what an earlier run wrote with --events and --log.
#pragma once

#include <string_view>
#include <vector>

#include "host/page/run_record.h"

namespace host {

/// The events of a record, one JSON object per line, in its order. Empty lines are passed over.
/// Throws HostError naming `path` and the line.
std::vector<RecordedEvent> ParseEventRecord(std::string_view text, std::string_view path);

/// The lines of a log file. Its local times are taken for those of this computer's time zone.
/// Throws HostError naming `path` and the line.
std::vector<RecordedLine> ParseLog(std::string_view text, std::string_view path);

/// Both files; `logPath` may be empty. Throws HostError.
RunRecord ReadRecord(std::string_view eventsPath, std::string_view logPath);

}  // namespace host
