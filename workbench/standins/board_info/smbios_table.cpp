#include "standins/board_info/smbios_table.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

namespace standins {
namespace {

// Types of structures.
constexpr std::uint8_t kBios = 0;
constexpr std::uint8_t kBaseboard = 2;
constexpr std::uint8_t kOemStrings = 11;
constexpr std::uint8_t kEndOfTable = 127;

// Offsets in the formatted part of a structure. A byte there that stands for a text holds its
// number, counted from 1; 0 means that there is none.
constexpr std::size_t kLengthOffset = 1;
constexpr std::size_t kBiosVersionOffset = 5;
constexpr std::size_t kBaseboardProductOffset = 5;
constexpr std::size_t kStructureHeaderSize = 4;

constexpr std::size_t kOemProductNumber = 7;

// The provider's header: calling method, major and minor version, revision, and the length of the
// structures as a little-endian 32-bit number.
constexpr std::size_t kTableLengthOffset = 4;
constexpr std::size_t kTableHeaderSize = 8;

struct Structure {
    std::string_view formatted;  ///< Header included.
    std::vector<std::string_view> texts;

    std::uint8_t Type() const { return static_cast<std::uint8_t>(formatted[0]); }

    std::string Text(std::size_t number) const {
        return number >= 1 && number <= texts.size() ? std::string(texts[number - 1])
                                                     : std::string();
    }

    std::string TextNamedAt(std::size_t offset) const {
        return offset < formatted.size() ? Text(static_cast<std::uint8_t>(formatted[offset]))
                                         : std::string();
    }
};

/// Takes the texts of a structure off the front of `table`: each ends with a zero byte, and the
/// last is followed by one more. A structure without texts has two zero bytes. False when the table
/// ends before that.
bool TakeTexts(std::string_view& table, std::vector<std::string_view>& texts) {
    while (true) {
        const std::size_t end = table.find('\0');
        if (end == std::string_view::npos) {
            return false;
        }
        if (end == 0) {
            const std::size_t terminatorSize = texts.empty() ? 2 : 1;
            if (table.size() < terminatorSize) {
                return false;
            }
            table.remove_prefix(terminatorSize);
            return true;
        }
        texts.push_back(table.substr(0, end));
        table.remove_prefix(end + 1);
    }
}

/// Takes one structure off the front of `table`; false when the table ends before it does.
bool TakeStructure(std::string_view& table, Structure& structure) {
    if (table.size() < kStructureHeaderSize) {
        return false;
    }
    const std::size_t length = static_cast<std::uint8_t>(table[kLengthOffset]);
    if (length < kStructureHeaderSize || length > table.size()) {
        return false;
    }
    structure.formatted = table.substr(0, length);
    structure.texts.clear();
    table.remove_prefix(length);
    return TakeTexts(table, structure.texts);
}

std::string_view Structures(const std::uint8_t* data, std::size_t size) {
    if (size < kTableHeaderSize) {
        return {};
    }
    std::size_t stated = 0;
    for (std::size_t i = kTableHeaderSize; i > kTableLengthOffset; --i) {
        stated = stated << 8 | data[i - 1];
    }
    return {reinterpret_cast<const char*>(data) + kTableHeaderSize,
            std::min(stated, size - kTableHeaderSize)};
}

}  // namespace

SmBiosTexts ParseSmBios(const std::uint8_t* data, std::size_t size) {
    SmBiosTexts texts;
    std::set<std::uint8_t> seen;  // Only the first structure of a type counts.
    std::string_view table = Structures(data, size);
    Structure structure;
    while (TakeStructure(table, structure) && structure.Type() != kEndOfTable) {
        if (!seen.insert(structure.Type()).second) {
            continue;
        }
        if (structure.Type() == kBios) {
            texts.biosVersion = structure.TextNamedAt(kBiosVersionOffset);
        } else if (structure.Type() == kBaseboard) {
            texts.boardProduct = structure.TextNamedAt(kBaseboardProductOffset);
        } else if (structure.Type() == kOemStrings) {
            texts.oemProduct = structure.Text(kOemProductNumber);
        }
    }
    return texts;
}

}  // namespace standins
