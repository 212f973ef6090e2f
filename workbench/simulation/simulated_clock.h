// Time as the plug-in sees it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

namespace simulation {

/// The steady clock, which a test may set and advance; between advances a set clock stands still.
/// Safe to use from any thread.
class SimulatedClock {
public:
    /// Without a time it is the real one.
    explicit SimulatedClock(std::optional<std::int64_t> nanoseconds)
        : isSet(nanoseconds), steady(nanoseconds.value_or(0)) {}

    void Advance(std::chrono::nanoseconds span) { steady += span.count(); }

    /// Absent when it is the real one.
    std::optional<std::chrono::nanoseconds> Steady() const {
        return isSet ? std::optional(std::chrono::nanoseconds(steady)) : std::nullopt;
    }

private:
    const bool isSet;
    std::atomic<std::int64_t> steady;
};

}  // namespace simulation
