#include "simulation/loader/json_node.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "simulation/call_text.h"
#include "simulation/machine_loader.h"

namespace simulation {
namespace {

std::string Found(const nlohmann::json& value) {
    if (value.is_structured()) {
        return value.is_object() ? "an object" : "a list";
    }
    constexpr std::size_t kEnoughToRecognise = 60;
    const std::string text = value.dump();
    return text.size() <= kEnoughToRecognise ? text : text.substr(0, kEnoughToRecognise) + "...";
}

}  // namespace

void JsonNode::Fail(const std::string& complaint) const {
    throw MachineFileError(file + ": " + (pointer.empty() ? "the document" : pointer.to_string()) +
                           ": " + complaint);
}

void JsonNode::FailExpecting(const std::string& expected) const {
    Fail("expected " + expected + ", found " + Found(*value));
}

void JsonNode::FailUnknownKey(std::string_view key,
                              const std::vector<std::string_view>& known) const {
    std::string list;
    for (const std::string_view one : known) {
        list += (list.empty() ? "\"" : ", \"") + std::string(one) + "\"";
    }
    Fail("unknown key \"" + std::string(key) + "\"; known here are " + list);
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
    const std::string text = IsText() ? Utf8() : std::string();
    GUID guid{};
    BYTE* const rest = guid.Data4;
    std::sscanf(text.c_str(), "{%8lX-%4hX-%4hX-%2hhX%2hhX-%2hhX%2hhX%2hhX%2hhX%2hhX%2hhX}",
                &guid.Data1, &guid.Data2, &guid.Data3, &rest[0], &rest[1], &rest[2], &rest[3],
                &rest[4], &rest[5], &rest[6], &rest[7]);
    // What reads as the same text again had the right form.
    if (_stricmp(text.c_str(), GuidText(guid).c_str()) != 0) {
        FailExpecting("a GUID such as \"{4D1E55B2-F16F-11CF-88CB-001111000030}\"");
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
        const std::string pair = text.substr(i, 2);
        if (pair.size() != 2 ||
            pair.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
            Fail("expected pairs of hex digits, found \"" + pair + "\" at character " +
                 std::to_string(i + 1));
        }
        bytes.push_back(static_cast<BYTE>(std::stoi(pair, nullptr, 16)));
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

JsonNode JsonNode::Child(const std::string& key, const nlohmann::json& child) const {
    return {child, pointer / key, file};
}

void JsonNode::ReadObject(const std::vector<Member>& members) const {
    std::vector<std::string_view> known;
    known.reserve(members.size());
    for (const Member& member : members) {
        known.push_back(member.key);
    }
    const std::vector<std::pair<std::string, JsonNode>> values = Members();
    for (const auto& [key, node] : values) {
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            FailUnknownKey(key, known);
        }
    }
    for (const Member& member : members) {
        const auto found = std::find_if(values.begin(), values.end(), [&](const auto& candidate) {
            return candidate.first == member.key;
        });
        if (found != values.end()) {
            member.read(found->second);
        } else if (member.required) {
            Fail("the key \"" + std::string(member.key) + "\" is missing");
        }
    }
}

}  // namespace simulation
