// What an XeEvent holds, and how it is checked and recorded.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/xeevent.h"

namespace standins {

/// In the order in which they were put; keys may repeat.
using EventFields = std::vector<std::pair<std::string, std::string>>;

/// One sentence, in UTF-8, for each published limit that the event exceeds.
std::vector<std::string> ExceededLimits(int id, const EventFields& fields);

/// The event as one line of JSON without a line feed, stamped with the current time.
std::string EventRecord(int id, const EventFields& fields);

}  // namespace standins

struct XeEvent::Content {
    int id = 0;
    standins::EventFields fields;
};
