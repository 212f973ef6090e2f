// Complaints about keys that nobody knows.
#pragma once

#include <string_view>
#include <vector>

namespace simulation {

class JsonNode;

/// Fails at `place` when `key` is none of `known`, naming the one that was probably meant,
/// or all of them.
void RequireKnownKey(const JsonNode& place, std::string_view key,
                     const std::vector<std::string_view>& known);

}  // namespace simulation
