// What a single occasion (a start, a tick, a firmware event) leads to.
#pragma once

#include <string>
#include <vector>

#include "accelerated/story/sent_event.h"

namespace story {

struct Outcome {
    std::string line;  ///< What is logged first; empty: nothing, or nothing that is compared.
    std::vector<SentEvent> events;

    bool operator==(const Outcome& other) const {
        return line == other.line && events == other.events;
    }
};

}  // namespace story
