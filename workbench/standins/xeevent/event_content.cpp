#include "standins/xeevent/event_content.h"

#include <windows.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "common/text.h"

namespace standins {

using workbench::AsUtf8;

namespace {

std::string UtcNow() {
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    char text[40] = "";
    std::snprintf(text, sizeof(text), "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text;
}

std::string Excess(int id, const std::string& what, std::uint64_t is, const char* unit,
                   std::uint64_t limit) {
    return "event " + std::to_string(id) + ": " + what + " has " + std::to_string(is) + " " + unit +
           ", more than the " + std::to_string(limit) + " that the event service takes";
}

}  // namespace

std::vector<std::string> ExceededLimits(int id, const EventFields& fields) {
    std::vector<std::string> sentences;
    if (fields.size() > XeEvent::MAX_PAIR_NUM) {
        sentences.push_back(Excess(id, "it", fields.size(), "fields", XeEvent::MAX_PAIR_NUM));
    }
    for (const auto& [key, value] : fields) {
        const std::string name = "\"" + AsUtf8(key) + "\"";
        if (key.size() > XeEvent::MAX_KEY_LEN) {
            sentences.push_back(
                Excess(id, "the key " + name, key.size(), "bytes", XeEvent::MAX_KEY_LEN));
        }
        if (value.size() > XeEvent::MAX_VALUE_LEN) {
            sentences.push_back(
                Excess(id, "the value of " + name, value.size(), "bytes", XeEvent::MAX_VALUE_LEN));
        }
    }
    return sentences;
}

std::string EventRecord(int id, const EventFields& fields) {
    nlohmann::ordered_json pairs = nlohmann::ordered_json::array();
    for (const auto& [key, value] : fields) {
        pairs.push_back({{"key", AsUtf8(key)}, {"value", AsUtf8(value)}});
    }
    nlohmann::ordered_json record;
    record["time"] = UtcNow();
    record["id"] = id;
    record["fields"] = std::move(pairs);
    return record.dump();
}

}  // namespace standins
