#include "accelerated/story/rhythm.h"

#include <algorithm>

namespace story {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;

std::vector<bool> HasPassed(Time from, Time to, hours limit) {
    const auto beyond = to - from - limit;
    const bool passed = beyond.count() >= 0;
    const bool close = beyond < kTolerance && beyond > -kTolerance;
    return close ? std::vector<bool>{passed, !passed} : std::vector<bool>{passed};
}

void CheckRhythm(const PluginRun& run, hours tick, Findings& findings) {
    // A busy machine delays single waits, by up to a real second in a bad moment.
    constexpr minutes kUsualDelay{10};
    constexpr hours kRareDelay{8};
    milliseconds shortest = milliseconds::max();
    for (std::size_t i = 1; i < run.loopLines.size(); ++i) {
        const milliseconds wait = run.loopLines[i] - run.loopLines[i - 1];
        if (wait < tick) {
            findings.Add(run.loopLines[i], "the timer did not wait for its whole tick");
        }
        shortest = std::min(shortest, wait);
    }
    if (run.loopLines.size() > 2 && shortest > tick + kUsualDelay) {
        findings.Add(run.start, "the timer waits for more than its tick");
    }
    if (run.stopped - run.loopLines.back() > tick + kRareDelay) {
        findings.Add(run.stopped, "the timer ended before Stop");
    }
}

}  // namespace story
