#include "host/run/tick_schedule.h"

#include <algorithm>
#include <cwchar>
#include <numeric>

#include "host/machine_time.h"

namespace host {
namespace {

constexpr std::wstring_view kRegisterText = L"Register timer:";
constexpr std::wstring_view kLoopText = L"BigdataTimerReportFrame loop";

bool StartsWith(std::wstring_view text, std::wstring_view start) {
    return text.substr(0, start.size()) == start;
}

}  // namespace

bool TickSchedule::OnLogLine(std::wstring_view line, std::chrono::seconds time) {
    if (StartsWith(line, kRegisterText)) {
        const std::wstring number(line.substr(kRegisterText.size()));
        const auto hours = static_cast<std::int32_t>(std::wcstol(number.c_str(), nullptr, 10));
        // The plug-in itself turns the others down.
        if (hours > 0) {
            intervalHours.push_back(hours);
            waitBegan = time;
        }
        return true;
    }
    if (IsWaitLine(line)) {
        ++waitsBegun;
        waitBegan = time;
        return true;
    }
    return false;
}

bool TickSchedule::IsWaitLine(std::wstring_view line) { return StartsWith(line, kLoopText); }

bool TickSchedule::Contains(std::int32_t hours) const {
    return std::find(intervalHours.begin(), intervalHours.end(), hours) != intervalHours.end();
}

std::optional<std::string> TickSchedule::NextRun() const {
    if (intervalHours.empty()) {
        return std::nullopt;
    }
    // The timer's thread may not have come to its first wait yet.
    const std::int64_t hoursThen = std::max<std::int64_t>(waitsBegun, 1) * TickHours();
    std::string due;
    for (const std::int32_t hours : intervalHours) {
        if (hoursThen % hours == 0) {
            due += (due.empty() ? "" : ", ") + std::to_string(hours) + "-hour";
        }
    }
    return FormatMachineTime(waitBegan + std::chrono::hours(TickHours())) +
           (due.empty() ? " (no report)" : " (" + due + " reports)");
}

std::int64_t TickSchedule::HoursPassed(std::chrono::seconds time) const {
    if (waitsBegun == 0) {
        return 0;
    }
    const bool waitIsOver = time >= waitBegan + std::chrono::hours(TickHours());
    return (waitIsOver ? waitsBegun : waitsBegun - 1) * TickHours();
}

std::int32_t TickSchedule::TickHours() const {
    return std::accumulate(
        intervalHours.begin(), intervalHours.end(), 0,
        [](std::int32_t left, std::int32_t right) { return std::gcd(left, right); });
}

}  // namespace host
