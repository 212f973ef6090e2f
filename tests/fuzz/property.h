// What must hold for the result of a fuzz input, whatever the input is.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace fuzz {

/// The product's answer to an input is not one that it may give.
class PropertyBroken : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Ends the case unless `holds`. `values` are shown with the property.
template <class... Values>
void Require(bool holds, const char* property, const Values&... values) {
    if (!holds) {
        std::string text = property;
        ((text += "\n    " + testing::PrintToString(values)), ...);
        throw PropertyBroken(text);
    }
}

/// Ends the case unless both are the same.
template <class Actual, class Expected>
void RequireSame(const Actual& actual, const Expected& expected, const char* what) {
    Require(actual == expected, what, actual, expected);
}

}  // namespace fuzz
