// Device lists as tables.
#pragma once

#include <vector>

#include "host/device_list.h"
#include "host/text_table.h"

namespace host {

/// A table with a row for each list, what changed from list to list, and the last list in full; no
/// line when there is no list. `firstNumber` is the number of the first list, counted on its
/// machine.
TextLines DescribeDeviceLists(const std::vector<DeviceList>& lists, int firstNumber);

}  // namespace host
