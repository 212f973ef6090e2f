#include "simulation/loader/repetition.h"

#include <cstdio>

namespace simulation {
namespace {

/// `form` is what stands between "${n" and "}".
std::string NumberText(const JsonNode& node, std::string_view form, unsigned number) {
    const bool withWidth = form.size() >= 2 && form[0] == ':' && form[1] >= '1' && form[1] <= '8';
    const bool decimal = form.empty() || (withWidth && form.size() == 2);
    const bool hexadecimal = withWidth && form.size() == 3 && form[2] == 'X';
    if (!decimal && !hexadecimal) {
        node.Fail("expected ${n}, ${n:4} or ${n:4X}, found \"${n" + std::string(form) + "}\"");
    }
    const int width = withWidth ? form[1] - '0' : 1;
    char text[16];
    std::snprintf(text, sizeof(text), hexadecimal ? "%0*X" : "%0*u", width, number);
    return text;
}

std::string NumberedText(const JsonNode& node, std::string_view text, unsigned number) {
    constexpr std::string_view kOpening = "${n";
    std::string result;
    for (;;) {
        const std::size_t begin = text.find(kOpening);
        result += text.substr(0, begin);
        if (begin == std::string_view::npos) {
            return result;
        }
        text.remove_prefix(begin + kOpening.size());
        const std::size_t end = text.find('}');
        if (end == std::string_view::npos) {
            node.Fail("\"${n\" without its \"}\"");
        }
        result += NumberText(node, text.substr(0, end), number);
        text.remove_prefix(end + 1);
    }
}

}  // namespace

nlohmann::json WithNumber(const JsonNode& node, unsigned number) {
    if (node.IsText()) {
        return NumberedText(node, node.Utf8(), number);
    }
    nlohmann::json result = node.Json();
    if (node.IsObject()) {
        for (const auto& [key, member] : node.Members()) {
            result[key] = WithNumber(member, number);
        }
    } else if (result.is_array()) {
        const std::vector<JsonNode> items = node.Items();
        for (std::size_t i = 0; i < items.size(); ++i) {
            result[i] = WithNumber(items[i], number);
        }
    }
    return result;
}

}  // namespace simulation
