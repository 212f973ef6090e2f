// UTF-8 by hand, so that what the product writes is not judged by the system that wrote it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace test_support {

/// The code point's one to four bytes.
std::string Utf8Of(std::uint32_t codePoint);

/// The length of the sequence at the text's begin; 0 when that is not UTF-8: stray and missing
/// continuation bytes, overlong forms, surrogates, values beyond U+10FFFF.
std::size_t Utf8SequenceLength(std::string_view text);

}  // namespace test_support
