// The machine's devices, found in another way than the product's: the registry says which devices
// and interfaces there are, and each is looked up by its name.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "device_reporter/device_info.h"

namespace plain_walk {

struct Interface {
    std::wstring deviceId;  ///< Upper-cased.
    std::wstring path;
};

/// Upper-cased instance ids of all devices, sorted.
std::vector<std::wstring> InstanceIds();

/// All interfaces of a class.
std::vector<Interface> Interfaces(const GUID& interfaceClass);

/// What SetupAPI and the device's id say about a device.
DeviceReporter::DeviceInfo Describe(const std::wstring& instanceId);

/// Overwrites name and manufacturer by what the HID device says. Returns the error number with
/// which it could not be opened, or 0.
DWORD AskHidDevice(const std::wstring& path, DeviceReporter::DeviceInfo& record);

}  // namespace plain_walk
