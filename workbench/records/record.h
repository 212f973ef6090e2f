// What a run sent and logged.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace records {

inline constexpr int kBiosInfoEventId = 992614500;
inline constexpr int kEcLogEventId = 992614512;
inline constexpr int kPopUpBlockInfoEventId = 992614518;
inline constexpr int kDeviceListEventId = 992614533;

/// One pair, with the bytes that were put.
struct SentField {
    std::string key;
    std::string value;
};

struct SentEvent {
    int id = 0;
    std::vector<SentField> fields;
};

struct RecordedEvent {
    std::int64_t time = 0;  ///< Milliseconds since 1970, UTC.
    SentEvent event;
};

struct RecordedLine {
    std::int64_t time = 0;  ///< Milliseconds since 1970, UTC.
    int level = 0;
    std::string text;  ///< UTF-8.
};

struct RunRecord {
    std::string origin;  ///< Where it comes from, in words.
    /// Number of the first device list, counted from the installation; nothing when unknown.
    std::optional<int> firstList;
    std::vector<RecordedEvent> events;
    std::vector<RecordedLine> lines;
};

/// "BIOS information"; "unknown event" for an id that none of the reports uses.
std::string EventName(int id);

/// Bytes of all keys and values.
std::size_t EventBytes(const SentEvent& event);

/// What the payload says of a device.
inline constexpr const char* kDeviceMembers[] = {"class", "name", "desc", "maker", "device"};

/// A device's texts, in that order. One that the payload lacks is empty.
using ListedDevice = std::vector<std::string>;

/// The devices of one field of a device list; nothing when it is not a JSON array of objects with
/// string values.
std::optional<std::vector<ListedDevice>> ParseDeviceChunk(const std::string& json);

}  // namespace records
