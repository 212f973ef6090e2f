// Walks over the machine's Plug and Play devices.
#pragma once

#include <windows.h>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Adds every present device that is not yet in the map, up to the limit of 500 entries.
///
/// False, with a log line, when the map is full beforehand or the device list cannot be opened.
/// Reads SetupAPI and the configuration manager. Monitor thread only.
bool AddAllDevicesToMap(DeviceMap& devices);

/// Adds every present device that exposes the interface class and is not yet in the map. A device
/// with HID interfaces gets the texts that the HID device itself gives. Otherwise as above.
bool AddDeviceInterfaceToMap(const GUID& interfaceClass, DeviceMap& devices);

/// The first fill of the map: devices with a HID interface, then all others.
void FillDeviceMap(DeviceMap& devices);

}  // namespace DeviceReporter
