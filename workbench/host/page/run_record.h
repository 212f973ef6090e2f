// What a run sent and logged, as the page shows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/sent_event.h"

namespace host {

struct RecordedEvent {
    std::int64_t time = 0;  ///< Milliseconds since 1970, UTC.
    SentEvent event;
};

struct RecordedLine {
    std::int64_t time = 0;  ///< Milliseconds since 1970, UTC.
    int level = 0;
    std::string text;  ///< UTF-8.
};

struct RunRecord {
    std::string origin;  ///< Where it comes from, in words.
    /// Number of the first device list, counted from the installation; nothing when unknown.
    std::optional<int> firstList;
    std::vector<RecordedEvent> events;
    std::vector<RecordedLine> lines;
};

}  // namespace host
