// Which devices are reported, and in which list.
#pragma once

#include <vector>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

class ReportDeviceInfo;

/// Sorts the reporter's devices, in map order, into HID, Bluetooth and other devices. Only devices
/// that share a container with a removable device are kept, system devices never. Monitor thread
/// only.
void ClassifyDevices(const ReportDeviceInfo& reporter, std::vector<DeviceInfo>& hidDevices,
                     std::vector<DeviceInfo>& bluetoothDevices,
                     std::vector<DeviceInfo>& otherDevices);

}  // namespace DeviceReporter
