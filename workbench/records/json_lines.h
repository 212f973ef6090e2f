// Text files that hold something on each line.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "simulation/loader/json_node.h"

namespace records {

/// Calls `read` for each line that is not blank, with its place ("story.jsonl:3").
void ForEachLine(std::string_view text, std::string_view path,
                 const std::function<void(std::string_view line, const std::string& place)>& read);

/// Calls `read` with the JSON value of a line. Throws BadInput when the line is no JSON, or with
/// the defect that `read` finds: place, defect and `advice` ("; write ..."), as it is by then.
void ReadJsonLine(std::string_view line, const std::string& place, const std::string& advice,
                  const std::function<void(const simulation::JsonNode& value)>& read);

/// The member of an object. Fails when the value is no object or lacks it.
simulation::JsonNode Member(const simulation::JsonNode& object, const std::string& key);

}  // namespace records
