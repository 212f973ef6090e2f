// Values of a machine file together with their place, so that every complaint can name it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace simulation {

/// A view of a value in a document that outlives it. All members throw MachineFileError when the
/// value is not of the expected kind.
class JsonNode {
public:
    /// A key that an object may have, and what becomes of its value.
    struct Member {
        std::string_view key;
        std::function<void(const JsonNode&)> read;
        bool required = false;
    };

    /// A whole document.
    JsonNode(const nlohmann::json& document, std::string fileName)
        : value(&document), file(std::move(fileName)) {}

    [[noreturn]] void Fail(const std::string& complaint) const;
    /// "expected ..., found ..."
    [[noreturn]] void FailExpecting(const std::string& expected) const;
    /// Names the keys that are known instead.
    [[noreturn]] void FailUnknownKey(std::string_view key,
                                     const std::vector<std::string_view>& known) const;

    const nlohmann::json& Json() const { return *value; }
    bool IsNull() const { return value->is_null(); }
    bool IsObject() const { return value->is_object(); }
    bool IsText() const { return value->is_string(); }
    bool IsNumber() const { return value->is_number(); }

    bool Flag() const;
    std::string Utf8() const;
    std::wstring Text() const;
    GUID Guid() const;
    /// Pairs of hex digits, in one text or a list of texts; spaces between pairs are allowed.
    std::vector<BYTE> Hex() const;

    template <class Number>
    Number Whole() const {
        using Limits = std::numeric_limits<Number>;
        if constexpr (std::is_signed_v<Number>) {
            return static_cast<Number>(Signed(Limits::min(), Limits::max()));
        } else {
            return static_cast<Number>(Unsigned(Limits::max()));
        }
    }

    /// The meaning of one of the words that this place allows.
    template <class Meaning>
    Meaning Word(const std::vector<std::pair<std::string_view, Meaning>>& words) const {
        std::string expected = "one of";
        const char* separator = " ";
        for (const auto& [word, meaning] : words) {
            if (IsText() && value->get_ref<const std::string&>() == word) {
                return meaning;
            }
            expected += separator + ("\"" + std::string(word) + "\"");
            separator = ", ";
        }
        FailExpecting(expected);
    }

    /// Reads an object that may have these keys and no others, in this order.
    void ReadObject(const std::vector<Member>& members) const;
    std::vector<JsonNode> Items() const;
    /// Keys and values of an object whose keys are free.
    std::vector<std::pair<std::string, JsonNode>> Members() const;

    /// The same place with another value; the value has to outlive the result.
    JsonNode WithValue(const nlohmann::json& other) const { return {other, pointer, file}; }

private:
    JsonNode(const nlohmann::json& jsonValue, nlohmann::json::json_pointer place,
             std::string fileName)
        : value(&jsonValue), pointer(std::move(place)), file(std::move(fileName)) {}

    JsonNode Child(const std::string& key, const nlohmann::json& child) const;
    std::int64_t Signed(std::int64_t least, std::int64_t most) const;
    std::uint64_t Unsigned(std::uint64_t most) const;
    std::vector<BYTE> HexLine() const;

    const nlohmann::json* value;
    nlohmann::json::json_pointer pointer;
    std::string file;
};

// The value of a node, as its target's type demands it. The parts of a machine have overloads of
// their own.

inline void Read(const JsonNode& node, bool& target) { target = node.Flag(); }
inline void Read(const JsonNode& node, std::string& target) { target = node.Utf8(); }
inline void Read(const JsonNode& node, std::wstring& target) { target = node.Text(); }
inline void Read(const JsonNode& node, GUID& target) { target = node.Guid(); }
inline void Read(const JsonNode& node, std::vector<BYTE>& target) { target = node.Hex(); }

template <class Number>
std::enable_if_t<std::is_integral_v<Number>> Read(const JsonNode& node, Number& target) {
    target = node.Whole<Number>();
}

/// Null makes the value absent.
template <class Value>
void Read(const JsonNode& node, std::optional<Value>& target) {
    target.reset();
    if (!node.IsNull()) {
        Read(node, target.emplace());
    }
}

template <class Value>
void Read(const JsonNode& node, std::vector<Value>& target) {
    for (const JsonNode& item : node.Items()) {
        Read(item, target.emplace_back());
    }
}

/// For JsonNode::Member. A missing key leaves the target as it is.
template <class Target>
std::function<void(const JsonNode&)> Into(Target& target) {
    return [&target](const JsonNode& node) { Read(node, target); };
}

}  // namespace simulation
