// The page's parts, which the build makes from the files beside this one.
#pragma once

#include <string_view>

namespace host {

/// What stands before and behind the record. The page's policy lets the browser run its own style
/// and script, which it knows by their hashes, and load nothing.
extern const std::string_view kPageFront;
extern const std::string_view kPageBack;

}  // namespace host
