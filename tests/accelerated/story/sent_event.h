// An event as the record of a run has it, and as the model expects it.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace story {

inline constexpr int kBiosEvent = 992614500;
inline constexpr int kEcLogEvent = 992614512;
inline constexpr int kOptimisationEvent = 992614518;
inline constexpr int kDeviceListEvent = 992614533;

using Fields = std::vector<std::pair<std::string, std::string>>;

struct SentEvent {
    int id = 0;
    Fields fields;

    bool operator==(const SentEvent& other) const {
        return id == other.id && fields == other.fields;
    }
};

}  // namespace story
