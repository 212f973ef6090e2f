// Timed happenings of a run.
#pragma once

#include <string_view>
#include <vector>

#include "host/run/happening.h"

namespace host {

/// Reads a whole script, ordered by time; happenings of the same time stay in the order of the
/// file. `path` is for messages. Throws BadInput that names file and line of the first defect.
std::vector<Happening> ParseScript(std::string_view text, std::string_view path);

}  // namespace host
