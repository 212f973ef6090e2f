// What a single occasion (a start, a tick, a firmware event) leads to.
#pragma once

#include <string>
#include <vector>

#include "support/recorded_events.h"

namespace story {

inline constexpr int kBiosEvent = 992614500;
inline constexpr int kEcLogEvent = 992614512;
inline constexpr int kOptimisationEvent = 992614518;
inline constexpr int kDeviceListEvent = 992614533;

struct SentEvent {
    int id = 0;
    test_support::EventFields fields;

    bool operator==(const SentEvent& other) const {
        return id == other.id && fields == other.fields;
    }
};

struct Outcome {
    std::string line;  ///< What is logged first; empty: nothing, or nothing that is compared.
    std::vector<SentEvent> events;

    bool operator==(const Outcome& other) const {
        return line == other.line && events == other.events;
    }
};

}  // namespace story
