// The story that ./dev run plays, played once for all tests: that takes half a minute.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/temp_folder.h"

namespace host_test {

/// Between two looks at the clock on a computer that does something else meanwhile.
inline constexpr std::chrono::hours kLateness{6};

/// An event of the record.
struct PlayedEvent {
    int id = 0;
    std::chrono::seconds
        time{};  ///< Since the first event, which comes right after the first Start.
    nlohmann::json fields;
    std::size_t bytes = 0;  ///< Of all keys and values.
};

/// The events that belong to one device list.
using PlayedList = std::vector<PlayedEvent>;

class PlayedStory {
public:
    /// Plays it on first use. Throws std::runtime_error when that is impossible.
    static const PlayedStory& Instance();

    const test_support::ChildResult& Result() const { return result; }
    const std::vector<PlayedEvent>& Events() const { return events; }
    std::vector<PlayedEvent> EventsWithId(int id) const;
    /// Less than half a day lies between the events of a list.
    std::vector<PlayedList> DeviceLists() const;

    /// The log lines of the first and of the second start, without time and level.
    const std::vector<std::string>& LogOfFirstStart() const { return firstLog; }
    const std::vector<std::string>& LogOfSecondStart() const { return secondLog; }

    const std::wstring& EventFile() const { return eventFile; }
    const std::wstring& LogFile() const { return logFile; }

private:
    PlayedStory();

    test_support::TempFolder folder;
    const std::wstring eventFile = folder.Path() + L"\\events.ndjson";
    const std::wstring logFile = folder.Path() + L"\\log.txt";
    test_support::ChildResult result;
    std::vector<PlayedEvent> events;
    std::vector<std::string> firstLog;
    std::vector<std::string> secondLog;
};

/// How many of the lines begin so.
std::size_t CountLines(const std::vector<std::string>& lines, const std::string& start);

/// The devices under a key of all events of a list, in order.
std::vector<nlohmann::json> DevicesOf(const PlayedList& list, const std::string& key);

}  // namespace host_test
