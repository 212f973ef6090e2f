#include "util/string_convert.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "simulation/fakes/families.h"
#include "simulation/fakes/heap.h"
#include "unit/import_override.h"
#include "unit/util/dirty_memory.h"

namespace {

using unit_tests::ImportOverride;

constexpr wchar_t kWithNul[] = L"ab\0cd";
const std::wstring kEmbeddedNul(kWithNul, 5);
const std::wstring kHalfPair{L'a', wchar_t{0xD83D}, L'b'};

TEST(WideToAnsi, KeepsNulsAndReplacesWhatTheCodePageLacks) {
    if (GetACP() != 1252 && GetACP() != CP_UTF8) {
        GTEST_SKIP() << "expected bytes are not known for ANSI code page " << GetACP();
    }
    for (const auto& [text, western, utf8] :
         {std::tuple(std::wstring(L"Board 17-A"), std::string("Board 17-A"), "Board 17-A"),
          std::tuple(std::wstring(), std::string(), ""),
          std::tuple(std::wstring(L"caf\u00E9 \u20AC"), std::string("caf\xE9 \x80"),
                     "caf\u00E9 \u20AC"),
          std::tuple(std::wstring(L"a\u4E2Db"), std::string("a?b"), "a\u4E2Db"),
          std::tuple(kHalfPair, std::string("a?b"), "a\uFFFDb")}) {
        EXPECT_EQ(WStringToString(text), GetACP() == CP_UTF8 ? utf8 : western);
    }
    EXPECT_EQ(WStringToString(kEmbeddedNul), std::string("ab\0cd", 5));
    EXPECT_EQ(WStringToString(std::wstring(3, L'\0')), std::string(3, '\0'));
}

TEST(WideToUtf8, EndsAtTheFirstNulAndReplacesHalfPairs) {
    for (const auto& [text, bytes] :
         {std::pair(std::wstring(L"Mouse 2.0"), "Mouse 2.0"), std::pair(std::wstring(), ""),
          std::pair(kEmbeddedNul, "ab"), std::pair(std::wstring(L"\0abc", 4), ""),
          std::pair(std::wstring(L"\u00E9\u4E2D\xD83D\xDDA8"),
                    "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x96\xA8"),
          std::pair(kHalfPair, "a\xEF\xBF\xBD\x62"),
          std::pair(std::wstring(L"\xDDA8"), "\xEF\xBF\xBD")}) {
        EXPECT_EQ(WStringToUtf8(text), bytes);
    }
}

TEST(WideToUtf8, ConvertsALongText) {
    const std::string bytes = WStringToUtf8(std::wstring(100'000, L'\u00E9'));
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
    return ImportOverride<decltype(::WideCharToMultiByte)>::Next()(
        codePage, flags, source, sourceLength, buffer, bufferSize, defaultCharacter, usedDefault);
}

class ConversionCalls : public testing::Test {
protected:
    ConversionCalls() {
        conversions.clear();
        failingConversion = 0;
    }

    const ImportOverride<decltype(::WideCharToMultiByte)> recorded{"WideCharToMultiByte",
                                                                   RecordedWideCharToMultiByte};
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

TEST_F(ConversionCalls, OfTheAnsiConversionLeaveNulsWhenTheConversionFails) {
    failingConversion = 2;
    EXPECT_EQ(WStringToString(L"abc"), std::string(3, '\0'));
}

TEST_F(ConversionCalls, OfTheUtf8ConversionEndAtTheTerminatorAndLeaveTheSpareByteAlone) {
    EXPECT_EQ(WStringToUtf8(L"\u00E9t\u00E9"), "\xC3\xA9t\xC3\xA9");
    ASSERT_EQ(conversions.size(), 2u);
    EXPECT_TRUE(
        (conversions[0] == Conversion{CP_UTF8, 0, L"\u00E9t\u00E9", -1, false, 0, false, false}));
    EXPECT_TRUE(
        (conversions[1] == Conversion{CP_UTF8, 0, L"\u00E9t\u00E9", -1, true, 6, false, false}));
}

TEST_F(ConversionCalls, OfTheUtf8ConversionYieldNothingWhenOneFails) {
    failingConversion = 1;
    EXPECT_EQ(WStringToUtf8(L"abc"), "");
    failingConversion = 4;
    const console_user_test::DirtyHeap heap;
    EXPECT_EQ(WStringToUtf8(L"abc"), "");
    EXPECT_EQ(conversions.size(), 4u);
}

int toldSize = 0;
int wideningCalls = 0;

/// Tells a size and then converts nothing.
int WINAPI TellSizeOnly(UINT, DWORD, const char*, int, wchar_t* buffer, int) {
    ++wideningCalls;
    return buffer == nullptr ? toldSize : 0;
}

TEST(AnsiToWide, EndsWithoutASizeAndYieldsNulsWhenTheConversionFails) {
    const ImportOverride<decltype(::MultiByteToWideChar)> handMade("MultiByteToWideChar",
                                                                   TellSizeOnly);
    EXPECT_EQ(StringToWString("abc"), L"");
    EXPECT_EQ(wideningCalls, 1);
    toldSize = 3;
    EXPECT_EQ(StringToWString("abc"), std::wstring(3, L'\0'));
}

}  // namespace
