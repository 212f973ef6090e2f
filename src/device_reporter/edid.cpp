#include "device_reporter/edid.h"

#include <cstddef>

#include "report/log_line.h"
#include "util/string_convert.h"

namespace DeviceReporter {

namespace {

constexpr std::size_t kManufacturerOffset = 8;
constexpr std::size_t kManufacturerSize = 2;

/// The low-order half of the serial number identifies a single monitor.
bool IsMasked(std::size_t offset) { return offset == 12 || offset == 13; }

std::string FormatMaskedHex(const std::string& edid) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string hex;
    hex.reserve(edid.size() * 2);
    for (std::size_t i = 0; i < edid.size(); ++i) {
        const unsigned byte = IsMasked(i) ? 0U : static_cast<unsigned char>(edid[i]);
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 0xF];
    }
    return hex;
}

}  // namespace

bool PushEdidToData(std::vector<std::wstring>& data, const std::string& edid) {
    const std::string hex = FormatMaskedHex(edid);
    std::wstring vendor;
    if (!ParseEdidVendor(edid.substr(kManufacturerOffset, kManufacturerSize), vendor)) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::PushEdidToData",
                     "ParseEdidVendor failed!");
        return false;
    }
    data.push_back(StringToWString(hex));
    data.push_back(vendor);
    return true;
}

bool ParseEdidVendor(const std::string& manufacturerBytes, std::wstring& vendor) {
    constexpr unsigned kLetterCount = 26;
    // Big-endian, five bits a letter, the last letter lowest. The top bit means nothing.
    unsigned code = static_cast<unsigned char>(manufacturerBytes.at(0)) * 256U +
                    static_cast<unsigned char>(manufacturerBytes.at(1));
    // Kept: receivers know the id with its trailing "#".
    std::string letters = "AAA#";
    for (std::size_t i = 3; i-- > 0;) {
        const unsigned letter = code & 0x1F;
        if (letter == 0 || letter > kLetterCount) {
            WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::ParseEdidVendor",
                         "Vendor data out of boundary");
            return false;
        }
        letters[i] = static_cast<char>('A' + letter - 1);
        code >>= 5;
    }
    vendor = StringToWString(letters);
    return true;
}

}  // namespace DeviceReporter
