// Why the plug-in does not report a device.
#pragma once

#include <map>
#include <string>

#include "device_reporter/device_info.h"

namespace device_inventory {

/// For each device, by its id, the DEVICE_INVENTORY_... bits of everything that by itself would
/// keep it out of the lists; 0 for a device that is reported.
std::map<std::wstring, unsigned> FindObstacles(const DeviceReporter::DeviceMap& devices);

}  // namespace device_inventory
