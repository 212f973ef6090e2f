// Monitors as device records.
#pragma once

#include <vector>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Appends a record per active monitor, or none at all when the display configuration cannot be
/// described in full. Always true. Monitor thread only.
bool AppendDisplayDevices(std::vector<DeviceInfo>& devices);

}  // namespace DeviceReporter
