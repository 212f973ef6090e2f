#include "accelerated/story/findings.h"

#include <algorithm>
#include <cstdio>

namespace story {
namespace {

constexpr std::size_t kMostShown = 20;

std::string TextOf(const Outcome& outcome) {
    std::string text = "line '" + outcome.line + "'";
    for (const SentEvent& event : outcome.events) {
        text += ", event " + std::to_string(event.id);
        for (const auto& [key, value] : event.fields) {
            text += ", " + key + " " + value;
        }
    }
    return text;
}

/// Where and how two outcomes differ.
std::string Difference(const Outcome& expected, const Outcome& found) {
    constexpr std::size_t kBefore = 40;
    constexpr std::size_t kLength = 100;
    const std::string texts[] = {TextOf(expected), TextOf(found)};
    std::size_t same = 0;
    while (same < std::min(texts[0].size(), texts[1].size()) && texts[0][same] == texts[1][same]) {
        ++same;
    }
    const std::size_t begin = same - std::min(same, kBefore);
    return "at character " + std::to_string(same) + " expected <" +
           texts[0].substr(begin, kLength) + ">, found <" + texts[1].substr(begin, kLength) + ">";
}

}  // namespace

void Findings::Compare(Time at, const std::string& occasion, const std::vector<Outcome>& possible,
                       const Outcome& happened) {
    ++occasionsCompared;
    eventsCompared += static_cast<int>(happened.events.size());
    const auto match = std::find(possible.begin(), possible.end(), happened);
    if (match == possible.end()) {
        Add(at, occasion + ": " + Difference(possible.front(), happened));
    } else if (match != possible.begin()) {
        ++tolerated;
    }
}

void Findings::Add(Time at, const std::string& difference) {
    const long long total = std::chrono::duration_cast<std::chrono::seconds>(at - zero).count();
    char text[40];
    std::snprintf(text, sizeof(text), "%lldd %02lld:%02lld:%02lld  ", total / 86400,
                  total / 3600 % 24, total / 60 % 60, total % 60);
    differences.push_back(text + difference);
}

std::string Findings::Differences() const {
    std::string text;
    for (std::size_t i = 0; i < std::min(differences.size(), kMostShown); ++i) {
        text += differences[i] + "\n";
    }
    if (differences.size() > kMostShown) {
        text += "and " + std::to_string(differences.size() - kMostShown) + " more\n";
    }
    return text;
}

}  // namespace story
