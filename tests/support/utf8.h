// UTF-8 by hand, so that what the product writes is not judged by the system that wrote it.
#pragma once

#include <string>
#include <string_view>

namespace test_support {

/// The text up to its first NUL. Half a surrogate pair becomes U+FFFD.
std::string Utf8FromUtf16(std::wstring_view text);

}  // namespace test_support
