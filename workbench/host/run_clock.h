// Machine time of a run.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>

namespace host {

/// Counts from the first Start of the plug-in. Reads the system's steady clock, so that it runs
/// fast where the whole process runs on a fast clock. Safe to use from any thread.
class RunClock {
public:
    /// The first call starts the clock; later ones change nothing.
    void Start() {
        Ticks expected = kNotStarted;
        startedAt.compare_exchange_strong(expected, Now());
    }

    /// Nothing before the start.
    std::optional<std::chrono::seconds> Elapsed() const {
        const Ticks start = startedAt;
        if (start == kNotStarted) {
            return std::nullopt;
        }
        return std::chrono::duration_cast<std::chrono::seconds>(Clock::duration(Now() - start));
    }

    /// How long until the clock shows `time`; zero when it is past, or not started.
    std::chrono::milliseconds Until(std::chrono::seconds time) const {
        const Ticks start = startedAt;
        if (start == kNotStarted) {
            return {};
        }
        const Clock::duration left = time - Clock::duration(Now() - start);
        return left.count() <= 0 ? std::chrono::milliseconds()
                                 : std::chrono::ceil<std::chrono::milliseconds>(left);
    }

private:
    using Clock = std::chrono::steady_clock;
    using Ticks = Clock::rep;

    static constexpr Ticks kNotStarted = -1;
    static Ticks Now() { return Clock::now().time_since_epoch().count(); }

    std::atomic<Ticks> startedAt{kNotStarted};
};

}  // namespace host
