// Texts through the conversions.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "support/utf8_sequence.h"
#include "util/string_convert.h"

namespace {

using fuzz::Require;
using fuzz::RequireSame;

bool IsHigh(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLow(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::string ExpectedUtf8(std::wstring_view text) {
    text = text.substr(0, text.find(L'\0'));
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t character = text[i];
        if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
            character = 0x10000u + (text[i] - 0xD800u) * 0x400u + (text[i + 1] - 0xDC00u);
            ++i;
        } else if (IsHigh(text[i]) || IsLow(text[i])) {
            character = 0xFFFD;
        }
        bytes += test_support::Utf8Of(character);
    }
    return bytes;
}

std::wstring MakeAnyText(fuzz::Random& random) { return fuzz::MakeText(random, 400); }

void CheckUtf8(const std::wstring& text) {
    const std::string bytes = WStringToUtf8(text);
    std::string_view rest = bytes;
    while (!rest.empty()) {
        const std::size_t length = test_support::Utf8SequenceLength(rest);
        Require(length != 0, "the result is UTF-8", bytes);
        rest.remove_prefix(length);
    }
    RequireSame(bytes, ExpectedUtf8(text),
                "each character up to a NUL is told, half pairs are not");
}

void CheckCodePage(const std::wstring& text) {
    const std::string once = WStringToString(text);
    RequireSame(once.empty(), text.empty(), "only an empty text becomes empty");
    RequireSame(WStringToString(StringToWString(once)), once,
                "what the code page has goes there and back");
}

std::wstring MakeAscii(fuzz::Random& random) {
    std::wstring text = fuzz::MakeText(random, 100);
    for (wchar_t& unit : text) {
        unit = static_cast<wchar_t>(unit & 0x7F);
    }
    return text;
}

void CheckAscii(const std::wstring& text) {
    const std::string narrow = WStringToString(text);
    RequireSame(narrow, std::string(text.begin(), text.end()), "ASCII stays, NULs included");
    RequireSame(StringToWString(narrow), text, "ASCII comes back, NULs included");
}

TEST(ConversionFuzz, WritesUtf8ForEveryText) {
    fuzz::TryInputs("texts to UTF-8", 200000, MakeAnyText, CheckUtf8);
}

TEST(ConversionFuzz, KeepsWhatTheCodePageHas) {
    fuzz::TryInputs("texts to the code page", 100000, MakeAnyText, CheckCodePage);
}

TEST(ConversionFuzz, KeepsAsciiWhole) {
    fuzz::TryInputs("ASCII texts there and back", 100000, MakeAscii, CheckAscii);
}

}  // namespace
