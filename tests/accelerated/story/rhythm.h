// Observed times against limits.
#pragma once

#include <chrono>
#include <vector>

#include "accelerated/story/findings.h"
#include "accelerated/story/observation.h"

namespace story {

/// Where a limit (24 hours, 72 hours, a happening) lies closer than this to an observed time, both
/// outcomes are right: what the plug-in compares is read a little before or after what is seen.
/// On the fast clock these are fifty real milliseconds, which a busy machine may keep a thread
/// waiting between the two. How many such outcomes a story may have is limited as well.
inline constexpr std::chrono::minutes kTolerance{30};

/// How long a busy machine may delay a thread: up to a real second in a bad moment.
inline constexpr std::chrono::hours kRareDelay{11};

/// Whether so much time had passed when the plug-in looked, which was between `earliest` and
/// `latest`; the likeliest answer first.
std::vector<bool> HasPassed(Time from, Time earliest, Time latest, std::chrono::hours limit);

/// What a busy machine took away: the time until the timer ran, and what its waits took beyond
/// their tick.
std::chrono::milliseconds TimeLost(const PluginRun& run, std::chrono::hours tick);

/// Finds a timer that wakes too early, always too late, or not to the end.
void CheckRhythm(const PluginRun& run, std::chrono::hours tick, Findings& findings);

}  // namespace story
