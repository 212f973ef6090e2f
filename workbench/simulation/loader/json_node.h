// Values of a machine file together with their place, so that every complaint can name it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulation/loader/object_shapes.h"

namespace simulation {

/// A view of a value in a document that outlives it. All members throw MachineFileError when the
/// value is not of the expected kind.
class JsonNode {
public:
    JsonNode(const nlohmann::json& jsonValue, std::string jsonPointer, std::string fileName)
        : value(&jsonValue), pointer(std::move(jsonPointer)), file(std::move(fileName)) {}

    [[noreturn]] void Fail(const std::string& complaint) const;
    /// "expected ..., found ..."
    [[noreturn]] void FailExpecting(const std::string& expected) const;

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

    std::vector<JsonNode> Items() const;
    /// Keys and values of an object whose keys are free.
    std::vector<std::pair<std::string, JsonNode>> Members() const;

    /// The same place with another value; the value has to outlive the result.
    JsonNode WithValue(const nlohmann::json& other) const { return {other, pointer, file}; }
    JsonNode Child(std::string_view key, const nlohmann::json& child) const;

private:
    std::int64_t Signed(std::int64_t least, std::int64_t most) const;
    std::uint64_t Unsigned(std::uint64_t most) const;
    std::vector<BYTE> HexLine() const;

    const nlohmann::json* value;
    std::string pointer;
    std::string file;
};

/// An object of one of the known shapes. A key that the shape lacks is an error.
class JsonObject {
public:
    JsonObject(JsonNode objectNode, const ObjectShape& shape);

    const JsonNode& Node() const { return node; }
    /// Nothing when the key is missing.
    std::optional<JsonNode> Find(std::string_view key) const;
    /// Throws when the key is missing.
    JsonNode operator[](std::string_view key) const;

private:
    JsonNode node;
};

}  // namespace simulation
