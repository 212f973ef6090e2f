// Machine time of a run, and its spans as people write and read them.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Reads "3d 04:00", "3d", "04:00:30", "36h" or "1d 2h 30m 5s"; nothing when it is none of these.
/// A clock time comes last and is below 24:00:00; each unit occurs once, the largest first.
std::optional<std::chrono::seconds> ParseMachineTime(std::string_view text);

/// "3d 04:00:00".
std::string FormatMachineTime(std::chrono::seconds time);

/// Counts from the first Start of the plug-in. Reads the system's steady clock, so that it runs
/// fast where the whole process runs on a fast clock. Safe to use from any thread.
class RunClock {
public:
    /// The first call starts the clock; later ones change nothing.
    void Start() {
        Clock::time_point notStarted;
        startedAt.compare_exchange_strong(notStarted, Clock::now());
    }

    /// Nothing before the start.
    std::optional<std::chrono::seconds> Elapsed() const {
        const Clock::time_point start = startedAt;
        return start == Clock::time_point()
                   ? std::nullopt
                   : std::optional(std::chrono::floor<std::chrono::seconds>(Clock::now() - start));
    }

    /// How long until the clock, which was started, shows `time`; zero when it is past.
    std::chrono::milliseconds Until(std::chrono::seconds time) const {
        const Clock::duration left = time - (Clock::now() - startedAt.load());
        return std::max(std::chrono::ceil<std::chrono::milliseconds>(left),
                        std::chrono::milliseconds());
    }

private:
    using Clock = std::chrono::steady_clock;

    std::atomic<Clock::time_point> startedAt{Clock::time_point()};
};

}  // namespace host
