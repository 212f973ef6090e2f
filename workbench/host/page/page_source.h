// The page's parts, which the build takes from the files beside this one.
#pragma once

#include <string_view>

namespace host {

/// Line feeds only: a browser hashes text after it has dropped carriage returns.
extern const std::string_view kPageTemplate;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace host
