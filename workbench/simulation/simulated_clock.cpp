#include "simulation/simulated_clock.h"

#include <limits>

namespace simulation {
namespace {

constexpr std::int64_t kNotSet = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

std::optional<std::chrono::nanoseconds> Value(const std::atomic<std::int64_t>& clock) {
    const std::int64_t value = clock;
    return value == kNotSet ? std::nullopt : std::optional(std::chrono::nanoseconds(value));
}

}  // namespace

SimulatedClock::SimulatedClock(const Clocks& clocks)
    : wall(clocks.unixSeconds ? *clocks.unixSeconds * kNanosecondsPerSecond : kNotSet),
      steady(clocks.steadyNanoseconds.value_or(kNotSet)) {}

void SimulatedClock::SetUnixSeconds(std::int64_t seconds) {
    wall = seconds * kNanosecondsPerSecond;
}

void SimulatedClock::Advance(std::chrono::nanoseconds span) {
    for (std::atomic<std::int64_t>* clock : {&wall, &steady}) {
        if (*clock != kNotSet) {
            *clock += span.count();
        }
    }
}

std::optional<std::chrono::nanoseconds> SimulatedClock::Wall() const { return Value(wall); }

std::optional<std::chrono::nanoseconds> SimulatedClock::Steady() const { return Value(steady); }

}  // namespace simulation
