// The typed properties of a device node.
#pragma once

#include <windows.h>
#include <setupapi.h>

#include <string>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Room for one property: 4096 bytes.
using PropertyBuffer = wchar_t[2048];

/// Reads the seven properties of a record through SetupAPI, one after the other into the caller's
/// buffer, and files each under its field. One that cannot be read leaves its field as it is.
void ReadDeviceProperties(HDEVINFO devices, SP_DEVINFO_DATA& device, PropertyBuffer& buffer,
                          DeviceInfo& record);

/// Text of a property of the given type: a number in decimal, a braced GUID, a string, a string
/// list merged into lines. Empty for other types.
std::wstring PropertyToString(DEVPROPTYPE type, const PropertyBuffer& buffer);

/// Merges a list of strings, each with its terminator, which ends at an empty string or with the
/// buffer.
std::wstring JoinStringList(const PropertyBuffer& buffer);

}  // namespace DeviceReporter
