// What the person gave cannot be used.
#pragma once

#include <stdexcept>

namespace workbench {

/// An option, a file or the installation is wrong. The text is one line: what is wrong, where, and
/// what to do about it.
class BadInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace workbench
