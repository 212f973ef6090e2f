// Devices as JSON text in chunks.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// The devices as compact JSON arrays of about one kilobyte each; none for an empty list. Each text
/// is cut to 32 UTF-16 units and written as UTF-8; "name" is left out unless asked for.
std::vector<std::string> SerializeDeviceList(const std::vector<DeviceInfo>& devices, bool withName);

}  // namespace DeviceReporter
