// Where the registry keeps a monitor's EDID.
#pragma once

#include <string>
#include <vector>

namespace DeviceReporter {

/// Registry path, under HKEY_LOCAL_MACHINE, of the "Device Parameters" key that belongs to a
/// monitor's device interface path. Empty, with a log line, when the path has another form.
std::wstring GetEditRegPath(const std::wstring& monitorDevicePath);

/// Reads the raw EDID below that registry path. False, with a log line, on failure; only one to
/// read the bytes, after their size, is the caller's to log.
bool GetValueFromReg(const std::wstring& regPath, std::string& edid);

/// Reads and decodes the EDID: appends its hex text and the manufacturer id. False, with a log
/// line, on failure; see PushEdidToData for what an EDID that is too short does.
bool GetDataFromReg(const std::wstring& regPath, std::vector<std::wstring>& data);

}  // namespace DeviceReporter
