// The typed properties of a device node.
#pragma once

#include <windows.h>

// Behind <windows.h>, which it needs.
#include <setupapi.h>

#include <string>

#include "device_reporter/device_info.h"

namespace DeviceReporter {

/// Room for one property: 4096 bytes.
using PropertyBuffer = wchar_t[2048];

/// Reads the seven properties of a record through SetupAPI. One that cannot be read leaves its
/// field empty. Uses one buffer for all calls: monitor thread only.
void ReadDeviceProperties(HDEVINFO devices, SP_DEVINFO_DATA& device, DeviceInfo& record);

/// Text of a property of the given type: a number in decimal, a braced GUID, a string, a string
/// list merged into lines. Empty for other types.
std::wstring PropertyToString(DEVPROPTYPE type, const PropertyBuffer& buffer);

/// Files the text under the record's field for that property; other properties are ignored.
void SetDeviceProperty(DeviceInfo& record, const DEVPROPKEY& key, const std::wstring& text);

/// Merges a list of strings, each with its terminator, which ends at an empty string or with the
/// buffer.
std::wstring JoinStringList(const PropertyBuffer& buffer);

}  // namespace DeviceReporter
