#include "simulation/loader/json_node.h"

#include "simulation/call_text.h"
#include "simulation/loader/nearest_key.h"
#include "simulation/machine_loader.h"

namespace simulation {
namespace {

std::string Found(const nlohmann::json& value) {
    switch (value.type()) {
        case nlohmann::json::value_t::null:
            return "null";
        case nlohmann::json::value_t::object:
            return "an object";
        case nlohmann::json::value_t::array:
            return "a list";
        default:
            break;
    }
    constexpr std::size_t kEnoughToRecognise = 60;
    const std::string text = value.dump();
    return text.size() <= kEnoughToRecognise ? text : text.substr(0, kEnoughToRecognise) + "...";
}

/// A key as a part of a JSON pointer.
std::string Escaped(std::string_view key) {
    std::string result;
    for (const char letter : key) {
        if (letter == '~') {
            result += "~0";
        } else if (letter == '/') {
            result += "~1";
        } else {
            result += letter;
        }
    }
    return result;
}

int HexDigit(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

}  // namespace

void JsonNode::Fail(const std::string& complaint) const {
    throw MachineFileError(file + ": " + (pointer.empty() ? "the document" : pointer) + ": " +
                           complaint);
}

void JsonNode::FailExpecting(const std::string& expected) const {
    Fail("expected " + expected + ", found " + Found(*value));
}

bool JsonNode::Flag() const {
    if (!value->is_boolean()) {
        FailExpecting("true or false");
    }
    return value->get<bool>();
}

std::string JsonNode::Utf8() const {
    if (!value->is_string()) {
        FailExpecting("a text");
    }
    auto text = value->get<std::string>();
    if (text.find('\0') != std::string::npos) {
        FailExpecting("a text without U+0000");
    }
    return text;
}

std::wstring JsonNode::Text() const { return FromUtf8(Utf8()); }

GUID JsonNode::Guid() const {
    constexpr std::string_view kForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
    const std::string text = IsText() ? Utf8() : std::string();
    bool right = text.size() == kForm.size();
    BYTE digits[32] = {};
    std::size_t count = 0;
    for (std::size_t i = 0; right && i < kForm.size(); ++i) {
        if (kForm[i] != 'x') {
            right = text[i] == kForm[i];
        } else {
            right = HexDigit(text[i]) >= 0;
            digits[count++] = static_cast<BYTE>(HexDigit(text[i]));
        }
    }
    if (!right) {
        FailExpecting("a GUID such as \"{4D1E55B2-F16F-11CF-88CB-001111000030}\"");
    }
    const auto number = [&](std::size_t first, std::size_t length) {
        unsigned long result = 0;
        for (std::size_t i = first; i < first + length; ++i) {
            result = result * 16 + digits[i];
        }
        return result;
    };
    GUID guid{number(0, 8), static_cast<WORD>(number(8, 4)), static_cast<WORD>(number(12, 4)), {}};
    for (std::size_t i = 0; i < 8; ++i) {
        guid.Data4[i] = static_cast<BYTE>(number(16 + i * 2, 2));
    }
    return guid;
}

std::vector<BYTE> JsonNode::Hex() const {
    if (!value->is_array()) {
        return HexLine();
    }
    std::vector<BYTE> bytes;
    for (const JsonNode& line : Items()) {
        const std::vector<BYTE> part = line.HexLine();
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    return bytes;
}

std::vector<BYTE> JsonNode::HexLine() const {
    const std::string text = Utf8();
    std::vector<BYTE> bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        const int high = HexDigit(text[i]);
        const int low = i + 1 < text.size() ? HexDigit(text[i + 1]) : -1;
        if (high < 0 || low < 0) {
            Fail("expected pairs of hex digits, found \"" + text.substr(i, 2) + "\" at character " +
                 std::to_string(i + 1));
        }
        bytes.push_back(static_cast<BYTE>(high * 16 + low));
        i += 2;
    }
    return bytes;
}

std::int64_t JsonNode::Signed(std::int64_t least, std::int64_t most) const {
    const bool fits = value->is_number_unsigned()
                          ? value->get<std::uint64_t>() <= static_cast<std::uint64_t>(most)
                          : value->is_number_integer() && value->get<std::int64_t>() >= least;
    if (!fits) {
        FailExpecting("a whole number from " + std::to_string(least) + " to " +
                      std::to_string(most));
    }
    return value->get<std::int64_t>();
}

std::uint64_t JsonNode::Unsigned(std::uint64_t most) const {
    if (!value->is_number_unsigned() || value->get<std::uint64_t>() > most) {
        FailExpecting("a whole number from 0 to " + std::to_string(most));
    }
    return value->get<std::uint64_t>();
}

std::vector<JsonNode> JsonNode::Items() const {
    if (!value->is_array()) {
        FailExpecting("a list");
    }
    std::vector<JsonNode> items;
    for (std::size_t i = 0; i < value->size(); ++i) {
        items.push_back(Child(std::to_string(i), (*value)[i]));
    }
    return items;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::Members() const {
    if (!value->is_object()) {
        FailExpecting("an object");
    }
    std::vector<std::pair<std::string, JsonNode>> members;
    for (const auto& [key, member] : value->items()) {
        members.emplace_back(key, Child(key, member));
    }
    return members;
}

JsonNode JsonNode::Child(std::string_view key, const nlohmann::json& child) const {
    return {child, pointer + "/" + Escaped(key), file};
}

JsonObject::JsonObject(JsonNode objectNode, const ObjectShape& shape)
    : node(std::move(objectNode)) {
    for (const auto& [key, member] : node.Members()) {
        RequireKnownKey(node, key, shape.keys);
    }
}

std::optional<JsonNode> JsonObject::Find(std::string_view key) const {
    const auto found = node.Json().find(std::string(key));
    if (found == node.Json().end()) {
        return std::nullopt;
    }
    return node.Child(key, *found);
}

JsonNode JsonObject::operator[](std::string_view key) const {
    if (const auto found = Find(key)) {
        return *found;
    }
    node.Fail("the key \"" + std::string(key) + "\" is missing");
}

}  // namespace simulation
