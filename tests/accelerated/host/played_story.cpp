#include "accelerated/host/played_story.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "host/sent_event.h"
#include "library/host/host_program.h"
#include "standins/common/text.h"

namespace host_test {
namespace {

using std::chrono::seconds;

/// Twice what a very busy computer needs: a hundred seconds.
constexpr std::chrono::hours kLimit{1000};

/// "2026-11-20T18:54:03.120Z".
seconds ParseRecordTime(const std::string& text) {
    std::tm parts{};
    if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &parts.tm_year, &parts.tm_mon,
                    &parts.tm_mday, &parts.tm_hour, &parts.tm_min, &parts.tm_sec) != 6) {
        throw std::runtime_error("no time of a record: " + text);
    }
    parts.tm_year -= 1900;
    parts.tm_mon -= 1;
    return seconds(_mkgmtime64(&parts));
}

std::vector<PlayedEvent> ReadEvents(const std::wstring& path) {
    std::vector<PlayedEvent> events;
    seconds first{};
    for (const nlohmann::json& line : ReadRecord(path)) {
        PlayedEvent event{line.at("id"), ParseRecordTime(line.at("time")), line.at("fields"), 0};
        first = events.empty() ? event.time : first;
        event.time -= first;
        for (const nlohmann::json& field : event.fields) {
            event.bytes += field.at("key").get<std::string>().size() +
                           field.at("value").get<std::string>().size();
        }
        events.push_back(std::move(event));
    }
    return events;
}

}  // namespace

const PlayedStory& PlayedStory::Instance() {
    static const PlayedStory story;
    return story;
}

PlayedStory::PlayedStory() {
    // The paths among the options are those of ./dev run.
    std::filesystem::current_path(PROJECT_FOLDER);
    std::vector<std::wstring> arguments{L"--events", eventFile, L"--log", logFile};
    for (const std::string& option :
         LinesOf(ReadFile(L"workbench/stories/office_laptop.options"))) {
        arguments.push_back(standins::ToWide(option));
    }
    result = RunHost(arguments, {}, kLimit);
    events = ReadEvents(eventFile);

    // The BIOS report is the first that each start registers.
    const std::string startLine = "Register timer:12(";
    std::size_t starts = 0;
    for (const std::string& line : LinesOf(ReadFile(logFile))) {
        const std::size_t text = line.find("] ");
        if (text == std::string::npos) {
            throw std::runtime_error("no line of a log: " + line);
        }
        starts += line.compare(text + 2, startLine.size(), startLine) == 0 ? 1 : 0;
        (starts < 2 ? firstLog : secondLog).push_back(line.substr(text + 2));
    }
}

std::vector<PlayedEvent> PlayedStory::EventsWithId(int id) const {
    std::vector<PlayedEvent> found;
    std::copy_if(events.begin(), events.end(), std::back_inserter(found),
                 [&](const PlayedEvent& event) { return event.id == id; });
    return found;
}

std::vector<PlayedList> PlayedStory::DeviceLists() const {
    std::vector<PlayedList> lists;
    for (PlayedEvent& event : EventsWithId(host::kDeviceListEventId)) {
        if (lists.empty() || event.time - lists.back().back().time >= std::chrono::hours(12)) {
            lists.emplace_back();
        }
        lists.back().push_back(std::move(event));
    }
    return lists;
}

std::size_t CountLines(const std::vector<std::string>& lines, const std::string& start) {
    return static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(),
        [&](const std::string& line) { return line.compare(0, start.size(), start) == 0; }));
}

std::vector<nlohmann::json> DevicesOf(const PlayedList& list, const std::string& key) {
    std::vector<nlohmann::json> devices;
    for (const PlayedEvent& event : list) {
        for (const nlohmann::json& field : event.fields) {
            if (field.at("key") == key) {
                const auto chunk = nlohmann::json::parse(field.at("value").get<std::string>());
                devices.insert(devices.end(), chunk.begin(), chunk.end());
            }
        }
    }
    return devices;
}

}  // namespace host_test
