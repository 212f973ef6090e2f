// An event that the plug-in sent.
#pragma once

#include <string>
#include <vector>

namespace host {

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

/// "BIOS information"; "unknown event" for an id that none of the reports uses.
std::string EventName(int id);

/// Bytes of all keys and values.
std::size_t EventBytes(const SentEvent& event);

/// A value as UTF-8. What is not valid UTF-8 is taken for text in the ANSI code page, which is what
/// the other reports put.
std::string FieldText(const std::string& bytes);

}  // namespace host
