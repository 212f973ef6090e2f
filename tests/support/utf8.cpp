#include "support/utf8.h"

#include <cstdint>

namespace test_support {
namespace {

bool IsHigh(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLow(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The code point's one to four bytes.
std::string Utf8Of(std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        return std::string(1, static_cast<char>(codePoint));
    }
    std::string tail;
    std::uint32_t rest = codePoint;
    std::uint32_t leadLimit = 0x40;  // What the lead byte has room for.
    std::uint32_t leadMark = 0x80;
    do {
        tail.insert(tail.begin(), static_cast<char>(0x80 | (rest & 0x3F)));
        rest >>= 6;
        leadLimit >>= 1;
        leadMark = leadMark >> 1 | 0x80;
    } while (rest >= leadLimit);
    return static_cast<char>(leadMark | rest) + tail;
}

}  // namespace

std::string Utf8FromUtf16(std::wstring_view text) {
    text = text.substr(0, text.find(L'\0'));
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t codePoint = text[i];
        if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
            codePoint = 0x10000u + (text[i] - 0xD800u) * 0x400u + (text[i + 1] - 0xDC00u);
            ++i;
        } else if (IsHigh(text[i]) || IsLow(text[i])) {
            codePoint = 0xFFFD;
        }
        result += Utf8Of(codePoint);
    }
    return result;
}

}  // namespace test_support
