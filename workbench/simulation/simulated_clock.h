// Time as the plug-in sees it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

#include "simulation/machine.h"

namespace simulation {

/// Two clocks that a test sets and advances. A clock that was never set is the real one. Between
/// advances a set clock stands still. Safe to use from any thread.
class SimulatedClock {
public:
    explicit SimulatedClock(const Clocks& clocks);

    void SetUnixSeconds(std::int64_t seconds);
    /// Moves those clocks that were set.
    void Advance(std::chrono::nanoseconds span);

    /// The wall clock since 1970; absent when it is the real one.
    std::optional<std::chrono::nanoseconds> Wall() const;
    std::optional<std::chrono::nanoseconds> Steady() const;

private:
    std::atomic<std::int64_t> wall;
    std::atomic<std::int64_t> steady;
};

}  // namespace simulation
