#include "simulation/loader/nearest_key.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "simulation/loader/json_node.h"

namespace simulation {
namespace {

/// How many letters have to be inserted, removed or replaced to get from one text to the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

void RequireKnownKey(const JsonNode& place, std::string_view key,
                     const std::vector<std::string_view>& known) {
    if (std::find(known.begin(), known.end(), key) != known.end()) {
        return;
    }
    const auto nearest = std::min_element(
        known.begin(), known.end(), [&](std::string_view left, std::string_view right) {
            return EditDistance(key, left) < EditDistance(key, right);
        });
    std::string remedy;
    if (EditDistance(key, *nearest) <= key.size() / 2) {
        remedy = "did you mean \"" + std::string(*nearest) + "\"?";
    } else {
        for (const std::string_view one : known) {
            remedy += (remedy.empty() ? "known here are \"" : ", \"") + std::string(one) + "\"";
        }
    }
    place.Fail("unknown key \"" + std::string(key) + "\"; " + remedy);
}

}  // namespace simulation
