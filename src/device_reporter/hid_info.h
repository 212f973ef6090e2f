// The texts that a HID device itself gives.
#pragma once

#include <windows.h>
#include <setupapi.h>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Completes the record with the strings of one HID interface of its device. True when the
/// interface's path was obtained, whether or not the device could be opened. Monitor thread only.
bool UpdateHidDeviceInfo(HDEVINFO devices, SP_DEVICE_INTERFACE_DATA& interfaceData,
                         DeviceInfo& record);

/// Opens the HID device without any access right, which is enough for its strings, and replaces
/// `name` by the product string and `manufacturer` by the manufacturer string. One that cannot be
/// read leaves its field as it is. True when the device was opened.
bool ReadHidStrings(const wchar_t* devicePath, DeviceInfo& record);

}  // namespace DeviceReporter
