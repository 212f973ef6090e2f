// Decoding a monitor's EDID.
#pragma once

#include <string>
#include <vector>

namespace DeviceReporter {

/// Appends two texts: the whole EDID in upper-case hex, with bytes 12 and 13 blanked so that the
/// serial number is not reported in full, then the manufacturer id. False, with a log line, when
/// the manufacturer id is not one. An EDID shorter than ten bytes raises std::out_of_range.
bool PushEdidToData(std::vector<std::wstring>& data, const std::string& edid);

/// Decodes the manufacturer id from EDID bytes 8 and 9: three letters, then "#". False, with a log
/// line, when one of the letters is none. Fewer than two bytes raise std::out_of_range.
bool ParseEdidVendor(const std::string& manufacturerBytes, std::wstring& vendor);

}  // namespace DeviceReporter
