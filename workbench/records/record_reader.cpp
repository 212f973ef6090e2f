#include "records/record_reader.h"

#include <windows.h>

#include <string>

#include "common/bad_input.h"
#include "common/text.h"
#include "records/json_lines.h"

namespace records {
namespace {

using simulation::JsonNode;

std::optional<std::int64_t> ToMilliseconds(const SYSTEMTIME& time) {
    // 1970 in the system's file times, which count steps of 100 ns from 1601.
    constexpr std::int64_t kEpoch = 116444736000000000;
    constexpr std::int64_t kStepsPerMillisecond = 10000;
    FILETIME file = {};
    if (!SystemTimeToFileTime(&time, &file)) {
        return std::nullopt;
    }
    const std::int64_t steps =
        static_cast<std::int64_t>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
    return (steps - kEpoch) / kStepsPerMillisecond;
}

/// Reads a text in which every 0 of `form` is a digit and everything else is as in `form`.
std::optional<SYSTEMTIME> ParseForm(std::string_view text, std::string_view form) {
    WORD numbers[8] = {};
    std::size_t count = 0;
    bool fits = text.size() == form.size();
    for (std::size_t i = 0; fits && i < form.size(); ++i) {
        if (form[i] == '0') {
            fits = text[i] >= '0' && text[i] <= '9';
            numbers[count] = static_cast<WORD>(numbers[count] * 10 + (text[i] - '0'));
        } else {
            fits = text[i] == form[i];
            ++count;
        }
    }
    if (!fits) {
        return std::nullopt;
    }
    return SYSTEMTIME{numbers[0], numbers[1], /*wDayOfWeek=*/0, numbers[2],
                      numbers[3], numbers[4], numbers[5],       numbers[6]};
}

std::string ReadText(const JsonNode& node) {
    if (!node.IsText()) {
        node.FailExpecting("a text");
    }
    // Whatever it holds: JsonNode has its own idea of texts.
    return node.Json().get<std::string>();
}

RecordedEvent ReadEvent(const JsonNode& object) {
    RecordedEvent recorded;
    const JsonNode time = Member(object, "time");
    if (const auto milliseconds = ParseUtcTime(ReadText(time))) {
        recorded.time = *milliseconds;
    } else {
        time.FailExpecting("a time of the form \"2026-11-20T18:54:03.120Z\"");
    }
    recorded.event.id = Member(object, "id").Whole<std::int32_t>();
    for (const JsonNode& field : Member(object, "fields").Items()) {
        recorded.event.fields.push_back(
            {ReadText(Member(field, "key")), ReadText(Member(field, "value"))});
    }
    return recorded;
}

/// Reads "2026-11-20 19:54:03.120 [3] text".
RecordedLine ReadLogLine(std::string_view line, const std::string& place) {
    constexpr std::size_t kTimeEnd = 23;
    constexpr std::size_t kTextBegin = 28;
    const auto time = ParseLocalTime(line.substr(0, kTimeEnd));
    if (!time || line.size() < kTextBegin || line.substr(kTimeEnd, 2) != " [" ||
        line[kTimeEnd + 2] < '0' || line[kTimeEnd + 2] > '9' ||
        line.substr(kTimeEnd + 3, 2) != "] ") {
        throw workbench::BadInput(
            place +
            ": not a log line; it begins like \"2026-11-20 19:54:03.120 [3] \", "
            "as --log writes it");
    }
    return {*time, line[kTimeEnd + 2] - '0', workbench::AsUtf8(line.substr(kTextBegin))};
}

}  // namespace

std::optional<std::int64_t> ParseUtcTime(std::string_view text) {
    const auto time = ParseForm(text, "0000-00-00T00:00:00.000Z");
    return time ? ToMilliseconds(*time) : std::nullopt;
}

std::optional<std::int64_t> ParseLocalTime(std::string_view text) {
    const auto local = ParseForm(text, "0000-00-00 00:00:00.000");
    SYSTEMTIME utc = {};
    if (!local || !TzSpecificLocalTimeToSystemTime(nullptr, &*local, &utc)) {
        return std::nullopt;
    }
    return ToMilliseconds(utc);
}

std::vector<RecordedEvent> ParseEventRecord(std::string_view text, std::string_view path) {
    std::vector<RecordedEvent> events;
    ForEachLine(text, path, [&](std::string_view line, const std::string& place) {
        ReadJsonLine(line, place,
                     "; correct or remove the line, or record the run again with --events",
                     [&](const JsonNode& value) { events.push_back(ReadEvent(value)); });
    });
    return events;
}

std::vector<RecordedLine> ParseLog(std::string_view text, std::string_view path) {
    std::vector<RecordedLine> lines;
    ForEachLine(text, path, [&](std::string_view line, const std::string& place) {
        lines.push_back(ReadLogLine(line, place));
    });
    return lines;
}

}  // namespace records
