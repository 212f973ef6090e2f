// Observed times against limits.
#pragma once

#include <chrono>
#include <vector>

#include "accelerated/story/findings.h"
#include "accelerated/story/observation.h"

namespace story {

/// Where a limit (24 hours, 72 hours, a happening) lies closer than this to an observed time, both
/// outcomes are right: what the plug-in compares is read a little before or after what is seen.
/// On the fast clock these are eight real milliseconds.
inline constexpr std::chrono::minutes kTolerance{5};

/// Whether so much time has passed, the likeliest answer first.
std::vector<bool> HasPassed(Time from, Time to, std::chrono::hours limit);

/// Finds a timer that wakes too early, always too late, or not to the end.
void CheckRhythm(const PluginRun& run, std::chrono::hours tick, Findings& findings);

}  // namespace story
