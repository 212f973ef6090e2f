// When the plug-in's timer runs next.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Learns the plug-in's schedule from its log lines: the intervals that it registers and each begin
/// of a wait. Not thread-safe.
class TickSchedule {
public:
    /// True when the line is about the timer.
    bool OnLogLine(std::wstring_view line, std::chrono::seconds time);

    /// Whether the line is the one that begins each wait.
    static bool IsWaitLine(std::wstring_view line);

    /// The plug-in was stopped: nothing is scheduled any more.
    void Clear() { *this = TickSchedule(); }

    /// Whether a report is registered at this interval.
    bool Contains(std::int32_t hours) const;

    /// "0d 12:00:00 (12-hour, 24-hour reports)", "0d 02:00:00 (no report)"; nothing while
    /// nothing is registered.
    std::optional<std::string> NextRun() const;

    /// Hours that the plug-in's timer counts by `time`; they fall behind machine time, because each
    /// wait ends a little late.
    std::int64_t HoursPassed(std::chrono::seconds time) const;

private:
    std::int32_t TickHours() const;

    std::vector<std::int32_t> intervalHours;
    std::int64_t waitsBegun = 0;
    std::chrono::seconds waitBegan{};  ///< Before the first wait, the last registration.
};

}  // namespace host
