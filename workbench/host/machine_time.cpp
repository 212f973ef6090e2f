#include "host/machine_time.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <sstream>

namespace host {
namespace {

using std::chrono::seconds;

struct Unit {
    char letter;
    int seconds;
};
constexpr std::array<Unit, 4> kUnits{{{'d', 86400}, {'h', 3600}, {'m', 60}, {'s', 1}}};

/// More would not fit into a run; the bound keeps the sums far from overflow.
constexpr std::size_t kMaxDigits = 6;

std::optional<int> ParseNumber(std::string_view digits) {
    int number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || digits.size() > kMaxDigits || digits[0] == '-') {
        return std::nullopt;
    }
    return number;
}

/// "hh:mm" or "hh:mm:ss".
std::optional<seconds> ParseClockTime(std::string_view text) {
    constexpr std::array<int, 3> kLimits{24, 60, 60};
    constexpr std::array<int, 3> kSeconds{3600, 60, 1};
    seconds sum{0};
    std::size_t parts = 0;
    for (; !text.empty() && parts < kLimits.size(); ++parts) {
        const std::size_t colon = text.find(':');
        const std::string_view part = text.substr(0, colon);
        const std::optional<int> number = ParseNumber(part);
        if (!number || *number >= kLimits[parts] || (parts != 0 && part.size() != 2)) {
            return std::nullopt;
        }
        sum += seconds(*number * kSeconds[parts]);
        if (colon == std::string_view::npos) {
            return parts == 0 ? std::nullopt : std::optional(sum);
        }
        text.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

}  // namespace

std::optional<seconds> ParseMachineTime(std::string_view text) {
    std::istringstream words{std::string(text)};
    std::string word;
    seconds sum{0};
    std::size_t nextUnit = 0;
    bool anyWord = false;
    bool clockSeen = false;
    while (words >> word) {
        if (clockSeen) {
            return std::nullopt;
        }
        anyWord = true;
        if (word.find(':') != std::string::npos) {
            // Behind days only: hours would be said twice otherwise.
            const std::optional<seconds> clockTime = ParseClockTime(word);
            if (!clockTime || nextUnit > 1) {
                return std::nullopt;
            }
            sum += *clockTime;
            clockSeen = true;
            continue;
        }
        while (nextUnit < kUnits.size() && kUnits[nextUnit].letter != word.back()) {
            ++nextUnit;
        }
        const std::optional<int> number = ParseNumber(word.substr(0, word.size() - 1));
        if (nextUnit == kUnits.size() || !number) {
            return std::nullopt;
        }
        sum += std::chrono::seconds(std::int64_t{*number} * kUnits[nextUnit].seconds);
        ++nextUnit;
    }
    return anyWord ? std::optional(sum) : std::nullopt;
}

std::string FormatMachineTime(seconds time) {
    const long long total = time.count();
    char text[40];
    std::snprintf(text, sizeof(text), "%lldd %02d:%02d:%02d", total / 86400,
                  static_cast<int>(total / 3600 % 24), static_cast<int>(total / 60 % 60),
                  static_cast<int>(total % 60));
    return text;
}

}  // namespace host
