// Texts at the limit of 32 UTF-16 units.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "support/strict_json.h"

namespace {

using DeviceReporter::DeviceInfo;

struct Field {
    const char* key;
    std::wstring DeviceInfo::*member;
};

const Field kFields[] = {
    {"class", &DeviceInfo::className}, {"desc", &DeviceInfo::description},
    {"device", &DeviceInfo::vendorId}, {"maker", &DeviceInfo::manufacturer},
    {"name", &DeviceInfo::name},
};

/// What arrives when `text` is in `field` and every other field is empty.
std::string Sent(const Field& field, const std::wstring& text) {
    DeviceInfo device;
    device.*field.member = text;
    const std::vector<std::string> chunks =
        DeviceReporter::SerializeDeviceList({device}, /*withName=*/true);
    const test_support::Json array = test_support::ParseCompactJson(chunks.at(0));
    std::string sent = "nothing under this key";
    for (const auto& [key, value] : array.items.at(0).members) {
        if (key == field.key) {
            sent = value.text;
        } else {
            EXPECT_EQ(value.text, "") << key;
        }
    }
    return sent;
}

class FieldCut : public testing::TestWithParam<Field> {
protected:
    static std::string SentText(const std::wstring& text) { return Sent(GetParam(), text); }
};

TEST_P(FieldCut, LeavesTextsOf31And32UnitsWhole) {
    EXPECT_EQ(SentText(std::wstring(30, L'a') + L"z"), std::string(30, 'a') + "z");
    EXPECT_EQ(SentText(std::wstring(31, L'a') + L"z"), std::string(31, 'a') + "z");
}

TEST_P(FieldCut, KeepsTheFirst32UnitsOfLongerTexts) {
    EXPECT_EQ(SentText(std::wstring(32, L'a') + L"z"), std::string(32, 'a'));
    EXPECT_EQ(SentText(L"0123456789012345678901234567890123456789"),
              "01234567890123456789012345678901");
    EXPECT_EQ(SentText(std::wstring(5000, L'a')), std::string(32, 'a'));
}

TEST_P(FieldCut, CountsUtf16UnitsNotBytes) {
    std::string expected;
    for (int i = 0; i < 32; ++i) {
        expected += "\xE6\x9D\xB1";
    }
    EXPECT_EQ(SentText(std::wstring(33, L'\u6771')), expected);
}

TEST_P(FieldCut, KeepsAPairThatEndsAtTheLimit) {
    EXPECT_EQ(SentText(std::wstring(30, L'a') + L"\xD83D\xDDA8" + L"z"),
              std::string(30, 'a') + "\xF0\x9F\x96\xA8");
}

TEST_P(FieldCut, CutsAPairInTwoAndTheHalfBecomesTheReplacementCharacter) {
    EXPECT_EQ(SentText(std::wstring(31, L'a') + L"\xD83D\xDDA8"),
              std::string(31, 'a') + "\xEF\xBF\xBD");
}

TEST_P(FieldCut, TurnsSingleHalvesOfPairsIntoReplacementCharacters) {
    EXPECT_EQ(SentText(L"a\xDDA8z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(SentText(L"a\xD83Dz"), "a\xEF\xBF\xBDz");
}

TEST_P(FieldCut, EndsTheTextAtANul) {
    EXPECT_EQ(SentText(std::wstring(L"before\0after", 12)), "before");
    EXPECT_EQ(SentText(std::wstring(L"\0after", 6)), "");
    EXPECT_EQ(SentText(std::wstring(31, L'a') + std::wstring(L"\0z", 2)), std::string(31, 'a'));
}

TEST_P(FieldCut, CountsCharactersThatAreEscapedOnce) {
    EXPECT_EQ(SentText(std::wstring(33, L'"')), std::string(32, '"'));
    EXPECT_EQ(SentText(std::wstring(33, L'\\')), std::string(32, '\\'));
    EXPECT_EQ(SentText(std::wstring(33, L'\n')), std::string(32, '\n'));
    EXPECT_EQ(SentText(std::wstring(33, L'\x1F')), std::string(32, '\x1F'));
}

INSTANTIATE_TEST_SUITE_P(Of, FieldCut, testing::ValuesIn(kFields),
                         [](const auto& testInfo) { return std::string(testInfo.param.key); });

}  // namespace
