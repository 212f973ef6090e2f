#include "accelerated/story/text.h"

#include <cstdint>
#include <utility>

namespace story {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsLead(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsTrail(wchar_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf8(std::string& text, std::uint32_t codePoint) {
    const auto append = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (codePoint < 0x80) {
        append(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6);
    } else {
        if (codePoint < 0x10000) {
            append(0xE0 | codePoint >> 12);
        } else {
            append(0xF0 | codePoint >> 18);
            append(0x80 | (codePoint >> 12 & 0x3F));
        }
        append(0x80 | (codePoint >> 6 & 0x3F));
    }
    append(0x80 | (codePoint & 0x3F));
}

template <typename String>
String WithoutSmallLetters(String text) {
    for (auto& unit : text) {
        if (unit >= 'a' && unit <= 'z') {
            unit = static_cast<typename String::value_type>(unit - 'a' + 'A');
        }
    }
    return text;
}

}  // namespace

std::wstring Utf16FromUtf8(std::string_view text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i++]);
        const int following = first < 0x80 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        std::uint32_t codePoint = following == 0 ? first : first & (0x3FU >> following);
        for (int k = 0; k < following && i < text.size(); ++k) {
            codePoint = codePoint << 6 | (static_cast<unsigned char>(text[i++]) & 0x3FU);
        }
        if (codePoint >= 0x10000) {
            result.push_back(static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
            codePoint = 0xDC00 + ((codePoint - 0x10000) & 0x3FF);
        }
        result.push_back(static_cast<wchar_t>(codePoint));
    }
    return result;
}

std::string Utf8FromUtf16(std::wstring_view text) {
    text = text.substr(0, text.find(L'\0'));
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t codePoint = text[i];
        if (IsLead(text[i]) && i + 1 < text.size() && IsTrail(text[i + 1])) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[++i] - 0xDC00U);
        } else if (IsLead(text[i]) || IsTrail(text[i])) {
            codePoint = kReplacement;
        }
        AppendUtf8(result, codePoint);
    }
    return result;
}

std::wstring UpperCase(std::wstring text) { return WithoutSmallLetters(std::move(text)); }
std::string UpperCase(std::string text) { return WithoutSmallLetters(std::move(text)); }

void AppendUnique(std::wstring& text, const std::wstring& added) {
    if (text.empty()) {
        text = added;
    } else if (text.find(added) == std::wstring::npos) {
        text += L'\n' + added;
    }
}

}  // namespace story
