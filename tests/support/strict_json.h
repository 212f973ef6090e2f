// A reader of compact JSON, written apart from the library with which the product writes it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test_support {

/// A JSON value. Members keep the document's order.
struct Json {
    enum class Kind { Literal, Number, String, Array, Object };

    Kind kind = Kind::Literal;
    std::string text;  ///< A string's bytes in UTF-8, or a literal or number as it is written.
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> members;
};

/// Reads one value that is the whole text. Stricter than the standard: no blanks outside strings
/// and no key twice in an object. Throws std::runtime_error with the byte offset and what is wrong
/// there.
Json ParseCompactJson(std::string_view text);

}  // namespace test_support
