#include "host/script.h"

#include <algorithm>

#include "host/files.h"
#include "host/script_line.h"

namespace host {
namespace {

constexpr std::string_view kBlanks = " \t\r";

/// Blank lines and comments hold no happening.
bool IsEmptyLine(std::string_view line) {
    const std::size_t first = line.find_first_not_of(kBlanks);
    return first == std::string_view::npos || line[first] == '#';
}

}  // namespace

std::vector<Happening> ParseScript(std::string_view text, std::string_view path) {
    std::vector<Happening> happenings;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        if (!IsEmptyLine(line)) {
            happenings.push_back(
                ParseScriptLine(line, std::string(path) + ":" + std::to_string(number)));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    std::stable_sort(
        happenings.begin(), happenings.end(),
        [](const Happening& left, const Happening& right) { return left.at < right.at; });
    return happenings;
}

std::vector<Happening> LoadScript(std::string_view path) {
    return ParseScript(ReadTextFile(path, "script"), path);
}

}  // namespace host
