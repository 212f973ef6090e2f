#include "host/event_view.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "host/device_list.h"

namespace host {
namespace {

/// The bytes behind "0x0a0x00..."; nothing when the text is not of that form.
std::optional<std::string> ParseHexText(const std::string& text) {
    constexpr std::size_t kCharactersPerByte = 4;
    if (text.size() % kCharactersPerByte != 0) {
        return std::nullopt;
    }
    const auto valueOf = [](char digit) {
        const std::string_view digits = "0123456789abcdef";
        return digits.find(digit);
    };
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += kCharactersPerByte) {
        const std::size_t high = valueOf(text[i + 2]);
        const std::size_t low = valueOf(text[i + 3]);
        if (text.compare(i, 2, "0x") != 0 || high > 15 || low > 15) {
            return std::nullopt;
        }
        bytes += static_cast<char>(high << 4 | low);
    }
    return bytes;
}

/// Sixteen bytes a line; the zeros at the end become one line.
TextLines Dump(const std::string& bytes) {
    constexpr std::size_t kBytesPerLine = 16;
    const std::size_t used = bytes.find_last_not_of('\0') + 1;
    TextLines lines;
    std::size_t shown = 0;
    while (shown < used) {
        char text[8];
        std::snprintf(text, sizeof(text), "%3zu ", shown);
        std::string line = text;
        for (const std::size_t end = std::min(shown + kBytesPerLine, bytes.size()); shown < end;
             ++shown) {
            std::snprintf(text, sizeof(text), " %02x", static_cast<unsigned char>(bytes[shown]));
            line += text;
        }
        lines.push_back(line);
    }
    if (shown < bytes.size()) {
        lines.push_back("and " + std::to_string(bytes.size() - shown) + " zero bytes");
    }
    return lines;
}

TextLines DescribeEcLog(const SentField& field, const std::string& bytes) {
    TextLines lines{field.key + ": " + std::to_string(bytes.size()) + " bytes as " +
                    std::to_string(field.value.size()) + " characters"};
    const TextLines dump = Dump(bytes);
    lines.insert(lines.end(), dump.begin(), dump.end());
    return lines;
}

TextLines DescribeChunks(const SentEvent& event) {
    TextTable table;
    table.rightAligned = {1, 3};
    for (const SentField& field : event.fields) {
        const auto devices = ParseDeviceChunk(field.value);
        table.rows.push_back({field.key, devices ? std::to_string(devices->size()) : "?",
                              devices && devices->size() == 1 ? "device" : "devices",
                              std::to_string(field.value.size()), "bytes"});
    }
    return FormatTable(table);
}

}  // namespace

TextLines DescribeEvent(const SentEvent& event) {
    if (event.id == kDeviceListEventId) {
        return DescribeChunks(event);
    }
    if (event.id == kEcLogEventId && event.fields.size() == 1) {
        if (const auto bytes = ParseHexText(event.fields[0].value)) {
            return DescribeEcLog(event.fields[0], *bytes);
        }
    }
    TextTable table;
    for (const SentField& field : event.fields) {
        const std::string text = FieldText(field.value);
        table.rows.push_back({field.key, text.empty() ? "(empty)" : text});
    }
    return FormatTable(table);
}

}  // namespace host
