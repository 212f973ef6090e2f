// Text conversions of the stand-ins.
#pragma once

#include <string>
#include <string_view>

namespace standins {

/// Wide text as UTF-8. What is not valid UTF-16 becomes the replacement character.
std::string ToUtf8(std::wstring_view text);

/// Bytes of unstated encoding as wide text: as UTF-8 if they are valid UTF-8, else as text in the
/// ANSI code page.
std::wstring ToWide(std::string_view bytes);

}  // namespace standins
