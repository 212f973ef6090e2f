// What was seen of a run: its log, its record of events and what the host showed.
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "accelerated/story/outcome.h"

namespace story {

/// Of the machine's clock, UTC.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

struct LogLine {
    Time time;
    std::string text;
};

struct TimedEvent {
    Time time;
    SentEvent event;
};

/// A line that announces a report, and the events that followed it.
struct TimedOutcome {
    Time time;
    Outcome outcome;
    Time lastEvent;  ///< `time` when no event followed.
};

/// From one Start to its Stop.
struct PluginRun {
    Time start;                    ///< The first timer is registered.
    bool registersHourly = false;  ///< For device lists.
    std::vector<Time> loopLines;   ///< Before each wait of the timer.
    Time stopped;
};

struct Observation {
    Time begin;  ///< Of machine time.
    std::vector<PluginRun> runs;
    std::vector<Time> happenings;            ///< When each was played, to a second or so.
    std::deque<TimedEvent> timerEvents;      ///< BIOS and optimisation component.
    std::deque<TimedOutcome> deviceReports;  ///< Lists and refusals.
    std::deque<TimedOutcome> firmwareReports;
    std::vector<TimedEvent> strangers;  ///< Events that belong to nothing.
};

/// The two files are the host's, `shown` is its standard output. Throws std::runtime_error where
/// they are not of the expected form.
Observation ReadObservation(const std::wstring& logFile, const std::wstring& recordFile,
                            const std::string& shown);

}  // namespace story
