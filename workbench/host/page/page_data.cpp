#include "host/page/page_data.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace host {
namespace {

using Json = nlohmann::ordered_json;

/// A day, less what a clock may be set back by, or a time zone read wrongly for.
constexpr std::int64_t kListsApart = 23LL * 3600 * 1000;

bool HasKey(const SentEvent& event, const std::string& key) {
    return std::any_of(event.fields.begin(), event.fields.end(),
                       [&](const SentField& field) { return field.key == key; });
}

bool Continues(const RecordedEvent& earlier, const RecordedEvent& later) {
    return later.time - earlier.time < kListsApart &&
           std::all_of(later.event.fields.begin(), later.event.fields.end(),
                       [&](const SentField& field) { return HasKey(earlier.event, field.key); });
}

Json FieldData(const SentField& field) {
    return Json::array({FieldText(field.key), FieldText(field.value), field.value.size()});
}

Json EventData(const RecordedEvent& recorded) {
    Json fields = Json::array();
    for (const SentField& field : recorded.event.fields) {
        fields.push_back(FieldData(field));
    }
    return {{"time", recorded.time},
            {"id", recorded.event.id},
            {"bytes", EventBytes(recorded.event)},
            {"fields", std::move(fields)}};
}

/// Such characters occur inside texts only, where JSON allows the escaped form.
std::string WithoutMarkup(const std::string& json) {
    std::string safe;
    safe.reserve(json.size() + json.size() / 8);
    for (const char character : json) {
        switch (character) {
            case '<':
                safe += "\\u003c";
                break;
            case '>':
                safe += "\\u003e";
                break;
            case '&':
                safe += "\\u0026";
                break;
            default:
                safe += character;
        }
    }
    return safe;
}

}  // namespace

std::vector<std::optional<int>> NumberDeviceLists(const std::vector<RecordedEvent>& events) {
    std::vector<std::optional<int>> numbers;
    const RecordedEvent* last = nullptr;
    int number = -1;
    for (const RecordedEvent& event : events) {
        if (event.event.id != kDeviceListEventId) {
            numbers.emplace_back();
            continue;
        }
        if (last == nullptr || !Continues(*last, event)) {
            ++number;
        }
        last = &event;
        numbers.emplace_back(number);
    }
    return numbers;
}

std::string PageData(const RunRecord& record) {
    Json data;
    data["origin"] = record.origin;
    data["firstList"] = record.firstList ? Json(*record.firstList) : Json(nullptr);
    data["events"] = Json::array();
    const auto lists = NumberDeviceLists(record.events);
    for (std::size_t i = 0; i < record.events.size(); ++i) {
        Json event = EventData(record.events[i]);
        if (lists[i]) {
            event["list"] = *lists[i];
        }
        data["events"].push_back(std::move(event));
    }
    data["log"] = Json::array();
    for (const RecordedLine& line : record.lines) {
        data["log"].push_back({{"time", line.time}, {"level", line.level}, {"text", line.text}});
    }
    return WithoutMarkup(data.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/true));
}

}  // namespace host
