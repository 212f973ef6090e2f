#include "host/views/event_view.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "common/text.h"
#include "host/machine_time.h"

namespace host {

using workbench::TextLines;
using workbench::TextTable;

namespace {

/// The bytes behind "0x0a0x00..."; nothing when the text is not of that form.
std::optional<std::string> ParseHexText(const std::string& text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const std::string digits = text.substr(i + 2, 2);
        if (text.compare(i, 2, "0x") != 0 ||
            digits.find_first_not_of("0123456789abcdef") != std::string::npos) {
            return std::nullopt;
        }
        bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
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

TextLines DescribeEcLog(const records::SentField& field, const std::string& bytes) {
    TextLines lines{field.key + ": " + std::to_string(bytes.size()) + " bytes as " +
                    std::to_string(field.value.size()) + " characters"};
    const TextLines dump = Dump(bytes);
    lines.insert(lines.end(), dump.begin(), dump.end());
    return lines;
}

TextLines DescribeChunks(const records::SentEvent& event) {
    TextTable table;
    table.rightAligned = {1, 3};
    for (const records::SentField& field : event.fields) {
        const auto devices = records::ParseDeviceChunk(field.value);
        table.rows.push_back({field.key, devices ? std::to_string(devices->size()) : "?",
                              devices && devices->size() == 1 ? "device" : "devices",
                              std::to_string(field.value.size()), "bytes"});
    }
    return FormatTable(table);
}

}  // namespace

TextLines DescribeEvent(const records::SentEvent& event) {
    if (event.id == records::kDeviceListEventId) {
        return DescribeChunks(event);
    }
    if (event.id == records::kEcLogEventId && event.fields.size() == 1) {
        if (const auto bytes = ParseHexText(event.fields[0].value)) {
            return DescribeEcLog(event.fields[0], *bytes);
        }
    }
    TextTable table;
    for (const records::SentField& field : event.fields) {
        const std::string text = workbench::AsUtf8(field.value);
        table.rows.push_back({field.key, text.empty() ? "(empty)" : text});
    }
    return FormatTable(table);
}

void EventSummary::Add(const records::SentEvent& event, std::chrono::seconds time) {
    Row& row = rows[event.id];
    if (row.count == 0) {
        row.first = time;
    }
    ++row.count;
    row.bytes += records::EventBytes(event);
    row.last = time;
}

TextLines EventSummary::Describe() const {
    if (rows.empty()) {
        return {"No event was sent."};
    }
    TextTable table;
    table.rightAligned = {2, 3, 4, 5};
    table.rows.push_back({"event", "name", "count", "bytes", "first", "last"});
    for (const auto& [id, row] : rows) {
        table.rows.push_back({std::to_string(id), records::EventName(id), std::to_string(row.count),
                              std::to_string(row.bytes), FormatMachineTime(row.first),
                              FormatMachineTime(row.last)});
    }
    return FormatTable(table);
}

}  // namespace host
