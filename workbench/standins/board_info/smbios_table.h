// The SMBIOS table as the firmware hands it out, and the texts that BoardInfo takes from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace standins {

/// Texts as the firmware stores them, bytes of unstated encoding. Each is empty when the table
/// lacks it.
struct SmBiosTexts {
    std::string boardProduct;  ///< "Product" of the first baseboard structure (type 2).
    std::string oemProduct;    ///< Seventh text of the first structure of OEM strings (type 11).
    std::string biosVersion;   ///< "BIOS Version" of the first BIOS structure (type 0).
};

/// Reads what GetSystemFirmwareTable returns for the provider 'RSMB': a header of eight bytes, then
/// the structures. Firmware tables are not to be trusted: nothing is read beyond `size`, nor beyond
/// the length that the header states, and a structure that is cut off ends the table.
SmBiosTexts ParseSmBios(const std::uint8_t* data, std::size_t size);

}  // namespace standins
