// Monitors as device records.
#pragma once

#include <vector>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Appends a record per active monitor, or none at all when the display configuration cannot be
/// described in full. Always true. Passes on the std::out_of_range of an EDID that is too short.
/// Monitor thread only.
bool AppendDisplayDevices(std::vector<DeviceInfo>& devices);

}  // namespace DeviceReporter
