#include "accelerated/story/observation.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "records/record_reader.h"
#include "support/host_program.h"

namespace story {
namespace {

using std::chrono::milliseconds;
using test_support::ReadFile;
using test_support::ScreenLine;
using test_support::ScreenLines;

constexpr std::string_view kLoopLine =
    "BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";
constexpr std::string_view kRegister12 =
    "Register timer:12(TimerReportMgr::RegisterReportCallback)";
constexpr std::string_view kRegister1 = "Register timer:1(TimerReportMgr::RegisterReportCallback)";

bool BeginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

Time TimeOf(std::int64_t millisecondsSince1970) {
    return Time(milliseconds(millisecondsSince1970));
}

TimedEvent ToTimedEvent(const records::RecordedEvent& recorded) {
    TimedEvent event{TimeOf(recorded.time), {recorded.event.id, {}}};
    for (const records::SentField& field : recorded.event.fields) {
        event.event.fields.emplace_back(field.key, field.value);
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

/// When machine time began. An event is shown a little after it was recorded, so the pair with the
/// smallest delay tells it best.
Time BeginOfMachineTime(const std::vector<ScreenLine>& shown, const std::vector<TimedEvent>& events,
                        Time firstStart) {
    std::map<int, std::deque<Time>> recorded;
    for (const TimedEvent& event : events) {
        recorded[event.event.id].push_back(event.time);
    }
    std::optional<Time> begin;
    for (const ScreenLine& line : shown) {
        const int id = line.kind == "event" ? std::stoi(line.text) : 0;
        if (std::deque<Time>& times = recorded[id]; !times.empty()) {
            begin = std::max(begin.value_or(Time::min()), times.front() - line.time);
            times.pop_front();
        }
    }
    return begin.value_or(firstStart);
}

}  // namespace

Observation ReadObservation(const std::wstring& logFile, const std::wstring& recordFile,
                            const std::string& shown) {
    Observation observation;
    // Local times: nothing here is right across a change to or from summer time.
    for (const records::RecordedLine& line : records::ParseLog(ReadFile(logFile), "the log")) {
        TakeLogLine(observation, {TimeOf(line.time), line.text});
    }
    std::vector<TimedEvent> events;
    for (const records::RecordedEvent& recorded :
         records::ParseEventRecord(ReadFile(recordFile), "the record")) {
        events.push_back(ToTimedEvent(recorded));
        TakeEvent(observation, events.back());
    }
    if (observation.runs.empty()) {
        throw std::runtime_error("the plug-in was never started");
    }
    const std::vector<ScreenLine> lines = ScreenLines(shown);
    observation.begin = BeginOfMachineTime(lines, events, observation.runs.front().start);
    std::size_t stops = 0;
    for (const ScreenLine& line : lines) {
        const Time time = observation.begin + line.time;
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
