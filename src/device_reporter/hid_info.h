// The texts that a HID device itself gives.
#pragma once

#include <windows.h>
#include <setupapi.h>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Completes the record with the strings of one HID interface of its device. False, with a log
/// line, when the interface's details have no size or no memory; true otherwise, even when the path
/// could not be read or the device not be opened. Monitor thread only.
bool UpdateHidDeviceInfo(HDEVINFO devices, SP_DEVICE_INTERFACE_DATA& interfaceData,
                         DeviceInfo& record);

/// Opens the HID device without any access right, which is enough for its strings, and replaces
/// `name` by the product string and `manufacturer` by the manufacturer string. One that cannot be
/// read leaves its field as it is. True when the device was opened; false, with a log line,
/// otherwise.
bool ReadHidStrings(const wchar_t* devicePath, DeviceInfo& record);

}  // namespace DeviceReporter
