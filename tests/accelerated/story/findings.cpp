#include "accelerated/story/findings.h"

#include <algorithm>
#include <cstdio>

namespace story {
namespace {

constexpr std::size_t kMostShown = 20;

std::string Excerpt(const std::string& text, std::size_t around) {
    constexpr std::size_t kBefore = 20;
    constexpr std::size_t kLength = 60;
    const std::size_t begin = around > kBefore ? around - kBefore : 0;
    return "'" + text.substr(begin, kLength) + "'" +
           (begin + kLength < text.size() ? "... of " + std::to_string(text.size()) : "");
}

/// Where and how two texts differ.
std::string TextDifference(const std::string& expected, const std::string& found) {
    std::size_t same = 0;
    while (same < std::min(expected.size(), found.size()) && expected[same] == found[same]) {
        ++same;
    }
    return "at character " + std::to_string(same) + " expected " + Excerpt(expected, same) +
           ", found " + Excerpt(found, same);
}

std::string KeysOf(const SentEvent& event) {
    std::string keys;
    for (const auto& [key, value] : event.fields) {
        keys += (keys.empty() ? "" : ", ") + key;
    }
    return std::to_string(event.id) + " (" + keys + ")";
}

std::string EventDifference(const SentEvent& expected, const SentEvent& found) {
    if (KeysOf(expected) != KeysOf(found)) {
        return "expected " + KeysOf(expected) + ", found " + KeysOf(found);
    }
    for (std::size_t i = 0; i < expected.fields.size(); ++i) {
        const auto& [key, value] = expected.fields[i];
        if (value != found.fields[i].second) {
            return key + ": " + TextDifference(value, found.fields[i].second);
        }
    }
    return {};
}

std::string OutcomeDifference(const Outcome& expected, const Outcome& found) {
    if (expected.line != found.line) {
        return "expected the line '" + expected.line + "', found '" + found.line + "'";
    }
    const std::size_t both = std::min(expected.events.size(), found.events.size());
    for (std::size_t i = 0; i < both; ++i) {
        const std::string difference = EventDifference(expected.events[i], found.events[i]);
        if (!difference.empty()) {
            return "event " + std::to_string(i + 1) + " of " +
                   std::to_string(expected.events.size()) + ": " + difference;
        }
    }
    const bool missing = expected.events.size() > both;
    const Outcome& longer = missing ? expected : found;
    return "expected " + std::to_string(expected.events.size()) + " events, found " +
           std::to_string(found.events.size()) + "; " + (missing ? "missing is " : "too much is ") +
           KeysOf(longer.events[both]);
}

}  // namespace

void Findings::Compare(Time at, const std::string& occasion, const std::vector<Outcome>& possible,
                       const Outcome& happened) {
    ++occasionsCompared;
    eventsCompared += static_cast<int>(happened.events.size());
    const auto match = std::find(possible.begin(), possible.end(), happened);
    if (match == possible.end()) {
        Add(at, occasion + ": " + OutcomeDifference(possible.front(), happened));
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
