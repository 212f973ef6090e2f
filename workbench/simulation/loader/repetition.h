// The running number of devices that a machine file describes once for many.
#pragma once

#include "simulation/loader/json_node.h"

namespace simulation {

/// The value of `node` with `number` in place of every ${n} in its texts: ${n} in decimal, ${n:4}
/// in decimal and ${n:4X} in hexadecimal digits with leading zeros to that width.
nlohmann::json WithNumber(const JsonNode& node, unsigned number);

}  // namespace simulation
