#include "util/string_convert.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "simulation/fakes/heap.h"
#include "simulation/import_redirection.h"
#include "unit/util/dirty_memory.h"

namespace {

constexpr wchar_t kWithNul[] = L"ab\0cd";
const std::wstring kEmbeddedNul(kWithNul, 5);

// --- WStringToString: the ANSI code page ---

/// The bytes of a text in the machine's ANSI code page, for those pages that tests know.
class WideToAnsi : public testing::Test {
protected:
    void SetUp() override {
        if (GetACP() != 1252 && GetACP() != CP_UTF8) {
            GTEST_SKIP() << "expected bytes are not known for ANSI code page " << GetACP();
        }
    }

    static std::string Expected(const char* western, const char* utf8) {
        return GetACP() == CP_UTF8 ? utf8 : western;
    }
};

TEST_F(WideToAnsi, KeepsPlainText) { EXPECT_EQ(WStringToString(L"Board 17-A"), "Board 17-A"); }

TEST_F(WideToAnsi, YieldsNothingForNothing) { EXPECT_EQ(WStringToString(L""), ""); }

TEST_F(WideToAnsi, KeepsAnEmbeddedNulAndWhatFollows) {
    EXPECT_EQ(WStringToString(kEmbeddedNul), std::string("ab\0cd", 5));
}

TEST_F(WideToAnsi, KeepsATextOfNulsOnly) {
    EXPECT_EQ(WStringToString(std::wstring(3, L'\0')), std::string(3, '\0'));
}

TEST_F(WideToAnsi, AddsNoTerminatorToTheLength) { EXPECT_EQ(WStringToString(L"abc").size(), 3u); }

TEST_F(WideToAnsi, ConvertsLettersOfTheCodePage) {
    EXPECT_EQ(WStringToString(L"caf\u00E9 \u20AC"), Expected("caf\xE9 \x80", "caf\u00E9 \u20AC"));
}

TEST_F(WideToAnsi, ReplacesALetterThatTheCodePageLacks) {
    EXPECT_EQ(WStringToString(L"a\u4E2Db"), Expected("a?b", "a\u4E2Db"));
}

TEST_F(WideToAnsi, ReplacesALoneSurrogate) {
    EXPECT_EQ(WStringToString(std::wstring{L'a', wchar_t{0xD83D}, L'b'}),
              Expected("a?b", "a\uFFFDb"));
}

// --- WStringToUtf8 ---

TEST(WideToUtf8, KeepsPlainText) { EXPECT_EQ(WStringToUtf8(L"Mouse 2.0"), "Mouse 2.0"); }

TEST(WideToUtf8, YieldsNothingForNothing) { EXPECT_EQ(WStringToUtf8(L""), ""); }

TEST(WideToUtf8, StopsAtAnEmbeddedNul) { EXPECT_EQ(WStringToUtf8(kEmbeddedNul), "ab"); }

TEST(WideToUtf8, YieldsNothingWhenTheTextBeginsWithANul) {
    EXPECT_EQ(WStringToUtf8(std::wstring(1, L'\0') + L"abc"), "");
}

TEST(WideToUtf8, WritesEAcuteAsTwoBytes) { EXPECT_EQ(WStringToUtf8(L"\u00E9"), "\xC3\xA9"); }

TEST(WideToUtf8, WritesLettersOfThreeAndFourBytes) {
    EXPECT_EQ(WStringToUtf8(L"\u4E2D"), "\xE4\xB8\xAD");
    EXPECT_EQ(WStringToUtf8(std::wstring{wchar_t{0xD83D}, wchar_t{0xDDA8}}), "\xF0\x9F\x96\xA8");
}

TEST(WideToUtf8, ReplacesALoneSurrogate) {
    EXPECT_EQ(WStringToUtf8(std::wstring{L'a', wchar_t{0xD83D}, L'b'}), "a\xEF\xBF\xBD\x62");
    EXPECT_EQ(WStringToUtf8(std::wstring{wchar_t{0xDDA8}}), "\xEF\xBF\xBD");
}

TEST(WideToUtf8, ConvertsALongText) {
    const std::wstring text(100'000, L'\u00E9');
    const std::string bytes = WStringToUtf8(text);
    ASSERT_EQ(bytes.size(), 200'000u);
    EXPECT_EQ(bytes.substr(199'998), "\xC3\xA9");
}

TEST(WideToUtf8, YieldsNothingWhenMemoryRunsOut) {
    const std::wstring text(7919, L'x');  // Of a size that nothing else asks for.
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    simulation::InstallHeapFakes(redirection);
    const simulation::MallocFailure memory(7919 + 2);  // The terminator and a spare byte.
    EXPECT_EQ(WStringToUtf8(text), "");
    EXPECT_EQ(memory.Count(), 1u);
}

// --- What the system is asked ---

/// One call of WideCharToMultiByte.
struct Conversion {
    UINT codePage;
    DWORD flags;
    std::wstring source;  ///< Up to the stated length, or to the first NUL.
    int sourceLength;
    bool hasBuffer;
    int bufferSize;
    bool hasDefaultCharacter;
    bool asksAboutDefault;

    bool operator==(const Conversion& other) const {
        return codePage == other.codePage && flags == other.flags && source == other.source &&
               sourceLength == other.sourceLength && hasBuffer == other.hasBuffer &&
               bufferSize == other.bufferSize && hasDefaultCharacter == other.hasDefaultCharacter &&
               asksAboutDefault == other.asksAboutDefault;
    }
};

std::vector<Conversion> conversions;
/// The call, counted from 1, that fails; 0 for none.
std::size_t failingConversion = 0;
decltype(::WideCharToMultiByte)* realWideCharToMultiByte = nullptr;

int WINAPI RecordedWideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* source,
                                       int sourceLength, char* buffer, int bufferSize,
                                       const char* defaultCharacter, BOOL* usedDefault) {
    conversions.push_back({codePage, flags,
                           sourceLength < 0
                               ? std::wstring(source)
                               : std::wstring(source, static_cast<std::size_t>(sourceLength)),
                           sourceLength, buffer != nullptr, bufferSize, defaultCharacter != nullptr,
                           usedDefault != nullptr});
    if (conversions.size() == failingConversion) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    return realWideCharToMultiByte(codePage, flags, source, sourceLength, buffer, bufferSize,
                                   defaultCharacter, usedDefault);
}

class ConversionCalls : public testing::Test {
protected:
    ConversionCalls() {
        conversions.clear();
        failingConversion = 0;
        realWideCharToMultiByte = redirection.Redirect<decltype(::WideCharToMultiByte)>(
            "WideCharToMultiByte", RecordedWideCharToMultiByte);
    }

    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

TEST_F(ConversionCalls, OfTheAnsiConversionStateTheLengthAndAskForNoDefault) {
    EXPECT_EQ(WStringToString(kEmbeddedNul).size(), 5u);
    ASSERT_EQ(conversions.size(), 2u);
    EXPECT_TRUE((conversions[0] == Conversion{CP_ACP, 0, kEmbeddedNul, 5, false, 0, false, false}));
    EXPECT_TRUE((conversions[1] == Conversion{CP_ACP, 0, kEmbeddedNul, 5, true, 5, false, false}));
}

TEST_F(ConversionCalls, OfTheAnsiConversionEndWhenTheSizeIsNotFound) {
    failingConversion = 1;
    EXPECT_EQ(WStringToString(L"abc"), "");
    EXPECT_EQ(conversions.size(), 1u);
}

TEST_F(ConversionCalls, OfTheUtf8ConversionEndAtTheTerminatorAndLeaveTheSpareByteAlone) {
    EXPECT_EQ(WStringToUtf8(L"\u00E9t\u00E9"), "\xC3\xA9t\xC3\xA9");
    ASSERT_EQ(conversions.size(), 2u);
    EXPECT_TRUE(
        (conversions[0] == Conversion{CP_UTF8, 0, L"\u00E9t\u00E9", -1, false, 0, false, false}));
    EXPECT_TRUE(
        (conversions[1] == Conversion{CP_UTF8, 0, L"\u00E9t\u00E9", -1, true, 6, false, false}));
}

TEST_F(ConversionCalls, OfTheUtf8ConversionYieldNothingWhenTheSizeIsNotFound) {
    failingConversion = 1;
    EXPECT_EQ(WStringToUtf8(L"abc"), "");
}

TEST_F(ConversionCalls, OfTheUtf8ConversionYieldNothingWhenTheConversionFails) {
    failingConversion = 2;
    const console_user_test::DirtyHeap heap;
    EXPECT_EQ(WStringToUtf8(L"abc"), "");
}

}  // namespace
