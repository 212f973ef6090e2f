#include "host/machine_time.h"

#include <cstdio>
#include <regex>
#include <string>

namespace host {

using std::chrono::seconds;

std::optional<seconds> ParseMachineTime(std::string_view text) {
    // Behind the days smaller units, or a clock time. More digits would not fit into a run.
    static const std::regex kForm(R"( *(?:(\d{1,6})d *)?)"
                                  R"((?:(?:(\d{1,6})h *)?(?:(\d{1,6})m *)?(?:(\d{1,6})s *)?)"
                                  R"(|([01]?\d|2[0-3]):([0-5]\d)(?::([0-5]\d))? *))");
    constexpr int kSeconds[] = {86400, 3600, 60, 1, 3600, 60, 1};
    std::cmatch match;
    if (text.find_first_not_of(' ') == std::string_view::npos ||
        !std::regex_match(text.data(), text.data() + text.size(), match, kForm)) {
        return std::nullopt;
    }
    seconds sum{0};
    for (std::size_t i = 0; i < std::size(kSeconds); ++i) {
        if (match[i + 1].matched) {
            sum += seconds(std::stoll(match[i + 1]) * kSeconds[i]);
        }
    }
    return sum;
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
