#include "common/text_table.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace workbench {
namespace {

/// Whether the character that a UTF-8 sequence encodes takes two columns.
bool IsWide(std::uint32_t character) {
    return (character >= 0x1100 && character <= 0x115F) ||
           (character >= 0x2E80 && character <= 0xA4CF) ||
           (character >= 0xAC00 && character <= 0xD7A3) ||
           (character >= 0xF900 && character <= 0xFAFF) ||
           (character >= 0xFE30 && character <= 0xFE6F) ||
           (character >= 0xFF00 && character <= 0xFF60) ||
           (character >= 0x1F300 && character <= 0x1FAFF) ||
           (character >= 0x20000 && character <= 0x3FFFD);
}

std::size_t Width(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        std::uint32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k) {
            character = character << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
        }
        width += IsWide(character) ? 2 : 1;
        i += length;
    }
    return width;
}

}  // namespace

TextLines FormatTable(const TextTable& table) {
    std::vector<std::size_t> widths;
    for (const auto& row : table.rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = Width(row[column]);
            if (width <= table.maxAlignedWidth) {
                widths[column] = std::max(widths[column], width);
            }
        }
    }
    const auto isRightAligned = [&](std::size_t column) {
        return std::find(table.rightAligned.begin(), table.rightAligned.end(), column) !=
               table.rightAligned.end();
    };
    TextLines lines;
    for (const auto& row : table.rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = Width(row[column]);
            const std::string padding(std::max(widths[column], width) - width, ' ');
            line += column == 0 ? "" : "  ";
            line += isRightAligned(column) ? padding + row[column] : row[column] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    return lines;
}

std::string Printable(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 0x20 && code != 0x7F) {
            result += byte;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof(escape), "\\x%02x", code);
        result += escape;
    }
    return result;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string Plural(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace workbench
