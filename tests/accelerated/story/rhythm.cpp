#include "accelerated/story/rhythm.h"

#include <algorithm>

namespace story {

using std::chrono::hours;
using std::chrono::milliseconds;

std::vector<bool> HasPassed(Time from, Time earliest, Time latest, hours limit) {
    const bool passed = latest - from >= limit;
    const bool certain =
        latest - from <= limit - kTolerance || earliest - from >= limit + kTolerance;
    return certain ? std::vector<bool>{passed} : std::vector<bool>{passed, !passed};
}

milliseconds TimeLost(const PluginRun& run, hours tick) {
    const auto waits = static_cast<hours::rep>(run.loopLines.size() - 1);
    return run.loopLines.back() - run.start - waits * tick;
}

void CheckRhythm(const PluginRun& run, hours tick, Findings& findings) {
    milliseconds shortest = milliseconds::max();
    for (std::size_t i = 1; i < run.loopLines.size(); ++i) {
        const milliseconds wait = run.loopLines[i] - run.loopLines[i - 1];
        if (wait < tick) {
            findings.Add(run.loopLines[i], "the timer did not wait for its whole tick");
        }
        shortest = std::min(shortest, wait);
    }
    if (run.loopLines.size() > 2 && shortest >= 2 * tick) {
        findings.Add(run.start, "the timer waits for more than its tick");
    }
    // A timer that has ended shows in the runs of a day and more.
    if (run.stopped - run.loopLines.back() > tick + kRareDelay) {
        findings.Add(run.stopped, "the timer ended before Stop");
    }
}

}  // namespace story
