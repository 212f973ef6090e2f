#include "accelerated/story/observation.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace story {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::string_view kLoopLine =
    "BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";
constexpr std::string_view kRegister12 =
    "Register timer:12(TimerReportMgr::RegisterReportCallback)";
constexpr std::string_view kRegister1 = "Register timer:1(TimerReportMgr::RegisterReportCallback)";
constexpr std::size_t kKindColumn = 15;
constexpr std::size_t kTextColumn = 22;

bool BeginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// "2026-11-20T18:54:03.120", with any character between day and hour.
SYSTEMTIME ParseSystemTime(const std::string& text) {
    SYSTEMTIME time{};
    if (std::sscanf(text.c_str(), "%4hu-%2hu-%2hu%*c%2hu:%2hu:%2hu.%3hu", &time.wYear, &time.wMonth,
                    &time.wDay, &time.wHour, &time.wMinute, &time.wSecond,
                    &time.wMilliseconds) != 7) {
        throw std::runtime_error("no time in '" + text + "'");
    }
    return time;
}

Time FromUtc(const SYSTEMTIME& time) {
    FILETIME file{};
    SystemTimeToFileTime(&time, &file);
    const auto ticks = static_cast<std::int64_t>(file.dwHighDateTime) << 32 | file.dwLowDateTime;
    // Of 100 ns since 1601.
    return Time(milliseconds(ticks / 10000) - seconds(11644473600));
}

Time FromLocal(const SYSTEMTIME& local) {
    SYSTEMTIME utc{};
    TzSpecificLocalTimeToSystemTime(/*lpTimeZoneInformation=*/nullptr, &local, &utc);
    return FromUtc(utc);
}

/// "2026-11-20 18:54:03.120 [3] text", in local time, as all lines of one log. Nothing here is told
/// right across a change to or from summer time.
LogLine ParseLogLine(const std::string& line) {
    const std::size_t level = line.find(" [");
    if (level == std::string::npos || line.size() < level + 5) {
        throw std::runtime_error("no log line: '" + line + "'");
    }
    return {FromLocal(ParseSystemTime(line)), line.substr(level + 5)};
}

TimedEvent ParseEvent(const std::string& line) {
    const nlohmann::json json = nlohmann::json::parse(line);
    TimedEvent event{FromUtc(ParseSystemTime(json.at("time").get<std::string>())),
                     {json.at("id").get<int>(), {}}};
    for (const nlohmann::json& field : json.at("fields")) {
        event.event.fields.emplace_back(field.at("key").get<std::string>(),
                                        field.at("value").get<std::string>());
    }
    return event;
}

void TakeLogLine(Observation& observation, const LogLine& line) {
    auto& runs = observation.runs;
    if (line.text == kRegister12) {
        runs.emplace_back().start = line.time;
    } else if (line.text == kRegister1 && !runs.empty()) {
        runs.back().registersHourly = true;
    } else if (line.text == kLoopLine && !runs.empty()) {
        runs.back().loopLines.push_back(line.time);
    } else if (BeginsWith(line.text, "Peripheral list") || BeginsWith(line.text, "IsAgreeClause")) {
        observation.deviceReports.push_back({line.time, {line.text, {}}, line.time});
    } else if (BeginsWith(line.text, "EC log") || BeginsWith(line.text, "ReadECLog")) {
        observation.firmwareReports.push_back({line.time, {line.text, {}}, line.time});
    }
}

/// To the last line before it.
void Attach(std::deque<TimedOutcome>& reports, Observation& observation, const TimedEvent& event) {
    TimedOutcome* owner = nullptr;
    for (TimedOutcome& report : reports) {
        if (report.time <= event.time) {
            owner = &report;
        }
    }
    if (owner == nullptr) {
        observation.strangers.push_back(event);
        return;
    }
    owner->outcome.events.push_back(event.event);
    owner->lastEvent = event.time;
}

void TakeEvent(Observation& observation, const TimedEvent& event) {
    switch (event.event.id) {
        case kBiosEvent:
        case kOptimisationEvent:
            observation.timerEvents.push_back(event);
            break;
        case kDeviceListEvent:
            Attach(observation.deviceReports, observation, event);
            break;
        case kEcLogEvent:
            Attach(observation.firmwareReports, observation, event);
            break;
        default:
            observation.strangers.push_back(event);
    }
}

/// A line that the host shows: "  3d 04:00:03  script ...".
struct ShownLine {
    seconds elapsed;  ///< Machine time.
    std::string kind;
    std::string text;
};

std::vector<ShownLine> ShownLines(const std::string& output) {
    std::vector<ShownLine> shown;
    for (const std::string& line : LinesOf(output)) {
        int days = 0;
        int hours = 0;
        int minutes = 0;
        int second = 0;
        if (line.size() > kTextColumn &&
            std::sscanf(line.c_str(), "%dd %d:%d:%d", &days, &hours, &minutes, &second) == 4) {
            const std::string kind = line.substr(kKindColumn, kTextColumn - kKindColumn);
            shown.push_back({seconds(((days * 24 + hours) * 60 + minutes) * 60 + second),
                             kind.substr(0, kind.find(' ')), line.substr(kTextColumn)});
        }
    }
    return shown;
}

/// When machine time began. An event is shown a little after it was recorded, so the pair with the
/// smallest delay tells it best.
Time BeginOfMachineTime(const std::vector<ShownLine>& shown, const std::vector<TimedEvent>& events,
                        Time firstStart) {
    std::map<int, std::deque<Time>> recorded;
    for (const TimedEvent& event : events) {
        recorded[event.event.id].push_back(event.time);
    }
    std::optional<Time> begin;
    for (const ShownLine& line : shown) {
        const int id = line.kind == "event" ? std::stoi(line.text) : 0;
        if (std::deque<Time>& times = recorded[id]; !times.empty()) {
            begin = std::max(begin.value_or(Time::min()), times.front() - line.elapsed);
            times.pop_front();
        }
    }
    return begin.value_or(firstStart);
}

}  // namespace

Observation ReadObservation(const std::string& log, const std::string& record,
                            const std::string& shown) {
    Observation observation;
    for (const std::string& line : LinesOf(log)) {
        TakeLogLine(observation, ParseLogLine(line));
    }
    std::vector<TimedEvent> events;
    for (const std::string& line : LinesOf(record)) {
        events.push_back(ParseEvent(line));
        TakeEvent(observation, events.back());
    }
    if (observation.runs.empty()) {
        throw std::runtime_error("the plug-in was never started");
    }
    const std::vector<ShownLine> lines = ShownLines(shown);
    observation.begin = BeginOfMachineTime(lines, events, observation.runs.front().start);
    std::size_t stops = 0;
    for (const ShownLine& line : lines) {
        const Time time = observation.begin + line.elapsed;
        if (line.kind == "script") {
            observation.happenings.push_back(time);
        } else if (line.kind == "step" && line.text == "Stopped" &&
                   stops < observation.runs.size()) {
            observation.runs[stops++].stopped = time;
        }
    }
    if (stops != observation.runs.size()) {
        throw std::runtime_error("the host shows another number of stops than of starts");
    }
    return observation;
}

}  // namespace story
