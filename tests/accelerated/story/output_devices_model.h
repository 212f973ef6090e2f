// What the inventory says of printers and displays.
#pragma once

#include <vector>

#include "accelerated/story/device_record.h"
#include "accelerated/story/machine_facts.h"

namespace story {

std::vector<DeviceRecord> PrinterRecords(const MachineFacts& machine);

/// None at all when one display cannot be read.
std::vector<DeviceRecord> DisplayRecords(const MachineFacts& machine);

}  // namespace story
