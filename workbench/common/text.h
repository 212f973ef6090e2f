// Text conversions.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// Wide text as UTF-8. What is not valid UTF-16 becomes the replacement character.
std::string ToUtf8(std::wstring_view text);

/// UTF-8 as wide text. What is not valid becomes the replacement character.
std::wstring FromUtf8(std::string_view text);

/// Bytes of unstated encoding as wide text: as UTF-8 if they are valid UTF-8, else as text in the
/// ANSI code page, in which the firmware's texts arrive.
std::wstring ToWide(std::string_view bytes);

/// The same bytes as valid UTF-8.
inline std::string AsUtf8(std::string_view bytes) { return ToUtf8(ToWide(bytes)); }

}  // namespace workbench
