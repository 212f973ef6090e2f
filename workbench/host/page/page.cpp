#include "host/page/page.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <nlohmann/json.hpp>

#include "common/text.h"
#include "common/text_table.h"
#include "host/files.h"
#include "records/record_reader.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

/// A day, less what a clock may be set back by, or a time zone read wrongly for.
constexpr std::int64_t kListsApart = 23LL * 3600 * 1000;

bool HasKey(const records::SentEvent& event, const std::string& key) {
    return std::any_of(event.fields.begin(), event.fields.end(),
                       [&](const records::SentField& field) { return field.key == key; });
}

bool Continues(const records::RecordedEvent& earlier, const records::RecordedEvent& later) {
    return later.time - earlier.time < kListsApart &&
           std::all_of(
               later.event.fields.begin(), later.event.fields.end(),
               [&](const records::SentField& field) { return HasKey(earlier.event, field.key); });
}

Json FieldData(const records::SentField& field) {
    return Json::array(
        {workbench::AsUtf8(field.key), workbench::AsUtf8(field.value), field.value.size()});
}

Json EventData(const records::RecordedEvent& recorded) {
    Json fields = Json::array();
    for (const records::SentField& field : recorded.event.fields) {
        fields.push_back(FieldData(field));
    }
    return {{"time", recorded.time},
            {"id", recorded.event.id},
            {"bytes", records::EventBytes(recorded.event)},
            {"fields", std::move(fields)}};
}

std::string PageData(const records::RunRecord& record) {
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
    for (const records::RecordedLine& line : record.lines) {
        data["log"].push_back({{"time", line.time}, {"level", line.level}, {"text", line.text}});
    }
    std::string json = data.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/true);
    // Such characters occur inside texts only, where JSON allows the escaped form.
    for (const auto& [character, escaped] :
         {std::pair("<", "\\u003c"), {">", "\\u003e"}, {"&", "\\u0026"}}) {
        json = workbench::Replaced(std::move(json), character, escaped);
    }
    return json;
}

std::string FileName(const std::string& path) { return path.substr(path.find_last_of("/\\") + 1); }

/// `logPath` may be empty.
records::RunRecord ReadRecord(const std::string& eventsPath, const std::string& logPath) {
    records::RunRecord record;
    record.origin = "The record " + FileName(eventsPath);
    record.events =
        records::ParseEventRecord(ReadTextFile(eventsPath, "record of events"), eventsPath);
    if (!logPath.empty()) {
        record.origin += " and the log " + FileName(logPath);
        record.lines = records::ParseLog(ReadTextFile(logPath, "log"), logPath);
    }
    return record;
}

}  // namespace

std::vector<std::optional<int>> NumberDeviceLists(
    const std::vector<records::RecordedEvent>& events) {
    std::vector<std::optional<int>> numbers;
    const records::RecordedEvent* last = nullptr;
    int number = -1;
    for (const records::RecordedEvent& event : events) {
        if (event.event.id != records::kDeviceListEventId) {
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

std::string MakePage(const records::RunRecord& record) {
    std::string page(kPageFront);
    page += PageData(record);
    page += kPageBack;
    return page;
}

void WritePage(const records::RunRecord& record, const std::string& path) {
    ReplaceTextFile("--page", path, MakePage(record));
}

void WritePageFromFiles(const std::string& eventsPath, const std::string& logPath,
                        const std::string& path) {
    const records::RunRecord record = ReadRecord(eventsPath, logPath);
    WritePage(record, path);
    std::cout << "The page is in " << path << ", with "
              << workbench::Plural(record.events.size(), "event") << " and "
              << workbench::Plural(record.lines.size(), "log line") << "\n";
}

}  // namespace host
