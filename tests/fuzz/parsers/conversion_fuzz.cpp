// Texts through the conversions.
#include <gtest/gtest.h>

#include <string>

#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "support/utf8.h"
#include "util/string_convert.h"

namespace {

using fuzz::RequireSame;

std::wstring MakeAnyText(fuzz::Random& random) { return fuzz::MakeText(random, 400); }

void CheckUtf8(const std::wstring& text) {
    RequireSame(WStringToUtf8(text), test_support::Utf8FromUtf16(text),
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
