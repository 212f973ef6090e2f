// Compares what happened with what had to happen, and collects the differences.
#pragma once

#include <string>
#include <vector>

#include "accelerated/story/observation.h"

namespace story {

class Findings {
public:
    explicit Findings(Time begin) : zero(begin) {}

    /// The first of `possible` has to have happened. Another one is as good and counted: the first
    /// differs from it only because an observed time lies close to a limit.
    void Compare(Time at, const std::string& occasion, const std::vector<Outcome>& possible,
                 const Outcome& happened);

    void Add(Time at, const std::string& difference);

    /// One difference a line, in machine time; empty when there is none.
    std::string Differences() const;

    int eventsCompared = 0;
    int occasionsCompared = 0;
    int tolerated = 0;  ///< Outcomes that only an observed time close to a limit explains.

private:
    const Time zero;
    std::vector<std::string> differences;
};

}  // namespace story
