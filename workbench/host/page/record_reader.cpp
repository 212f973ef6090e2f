#include "host/page/record_reader.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/files.h"
#include "host/host_error.h"
#include "host/page/recorded_time.h"
#include "standins/common/text.h"

namespace host {
namespace {

using Json = nlohmann::json;

/// A line of a file, for messages.
struct Place {
    std::string_view path;
    std::size_t line = 0;

    HostError Defect(const std::string& what) const {
        return HostError(ExitCode::BadInput,
                         std::string(path) + ":" + std::to_string(line) + ": " + what);
    }
};

constexpr char kMend[] = "; mend or remove the line, or record the run again with --events";

/// Calls `read` for each line that is not empty.
template <typename Read>
void ForEachLine(std::string_view text, std::string_view path, Read read) {
    for (Place place{path, 1}; !text.empty(); ++place.line) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            read(line, place);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string ReadText(const Json& object, const char* key, const Place& place) {
    const auto member = object.find(key);
    if (member == object.end() || !member->is_string()) {
        throw place.Defect(std::string("\"") + key + "\" is missing or not a text" + kMend);
    }
    return member->get<std::string>();
}

int ReadId(const Json& object, const Place& place) {
    const auto member = object.find("id");
    const bool isNumber = member != object.end() && member->is_number_integer();
    // A number above the signed range must not wrap round into the allowed one.
    const bool isSmall =
        isNumber && (!member->is_number_unsigned() ||
                     member->get<std::uint64_t>() <= std::numeric_limits<std::int32_t>::max());
    if (!isSmall || member->get<std::int64_t>() < std::numeric_limits<std::int32_t>::min()) {
        throw place.Defect(std::string("\"id\" is missing or not a number of an event") + kMend);
    }
    return member->get<int>();
}

std::vector<SentField> ReadFields(const Json& object, const Place& place) {
    const auto member = object.find("fields");
    if (member == object.end() || !member->is_array()) {
        throw place.Defect(std::string("\"fields\" is missing or not an array") + kMend);
    }
    std::vector<SentField> fields;
    for (const Json& field : *member) {
        if (!field.is_object()) {
            throw place.Defect(std::string("a field is not an object with \"key\" and \"value\"") +
                               kMend);
        }
        fields.push_back({ReadText(field, "key", place), ReadText(field, "value", place)});
    }
    return fields;
}

RecordedEvent ReadEvent(std::string_view line, const Place& place) {
    Json object;
    try {
        object = Json::parse(line);
    } catch (const Json::parse_error& error) {
        throw place.Defect("not valid JSON at column " + std::to_string(error.byte) + kMend);
    } catch (const Json::out_of_range&) {
        throw place.Defect(std::string("a number is too large") + kMend);
    }
    if (!object.is_object()) {
        throw place.Defect(std::string("not an event") + kMend);
    }
    const std::string time = ReadText(object, "time", place);
    const auto milliseconds = ParseUtcTime(time);
    if (!milliseconds) {
        throw place.Defect("\"time\" is \"" + time +
                           "\"; it has the form \"2026-11-20T18:54:03.120Z\"");
    }
    return {*milliseconds, {ReadId(object, place), ReadFields(object, place)}};
}

/// Reads "2026-11-20 19:54:03.120 [3] text".
RecordedLine ReadLogLine(std::string_view line, const Place& place) {
    constexpr std::size_t kTimeEnd = 23;
    constexpr std::string_view kForm = " [0] ";
    const std::string_view level = line.substr(std::min(kTimeEnd, line.size()), kForm.size());
    const auto time = ParseLocalTime(line.substr(0, kTimeEnd));
    const bool isLevel = level.size() == kForm.size() && level.substr(0, 2) == " [" &&
                         level[2] >= '0' && level[2] <= '9' && level.substr(3) == "] ";
    if (!time || !isLevel) {
        throw place.Defect(
            "not a log line; it begins like \"2026-11-20 19:54:03.120 [3] \", as --log writes it");
    }
    return {*time, level[2] - '0', FieldText(std::string(line.substr(kTimeEnd + kForm.size())))};
}

std::string FileName(std::string_view path) {
    return std::string(path.substr(path.find_last_of("/\\") + 1));
}

}  // namespace

std::vector<RecordedEvent> ParseEventRecord(std::string_view text, std::string_view path) {
    std::vector<RecordedEvent> events;
    ForEachLine(text, path, [&](std::string_view line, const Place& place) {
        events.push_back(ReadEvent(line, place));
    });
    return events;
}

std::vector<RecordedLine> ParseLog(std::string_view text, std::string_view path) {
    std::vector<RecordedLine> lines;
    ForEachLine(text, path, [&](std::string_view line, const Place& place) {
        lines.push_back(ReadLogLine(line, place));
    });
    return lines;
}

RunRecord ReadRecord(std::string_view eventsPath, std::string_view logPath) {
    RunRecord record;
    record.origin = "The record " + FileName(eventsPath);
    record.events = ParseEventRecord(ReadTextFile(eventsPath, "record of events"), eventsPath);
    if (!logPath.empty()) {
        record.origin += " and the log " + FileName(logPath);
        record.lines = ParseLog(ReadTextFile(logPath, "log"), logPath);
    }
    return record;
}

}  // namespace host
