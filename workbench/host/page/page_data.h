// What the page's script reads.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/page/run_record.h"

namespace host {

/// For each event the number of the device list that it is a part of, counted from 0; nothing for
/// other events. The parts of a list follow one another, and a later part has no key that the one
/// before it lacks; the plug-in begins the next list a day later at the earliest.
std::vector<std::optional<int>> NumberDeviceLists(const std::vector<RecordedEvent>& events);

/// The record as JSON in ASCII that holds none of the characters that mean something to HTML, so
/// that no text of a device can end the element that it stands in.
std::string PageData(const RunRecord& record);

}  // namespace host
