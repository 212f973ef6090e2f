#include <cstdint>
#include <string>

#include "device_reporter/device_properties.h"
#include "support/grouping_locale.h"
#include "unit/device_reporter/device_test.h"
#include "unit/device_reporter/property_buffer.h"

namespace {

using namespace std::literals;
using DeviceReporter::PropertyToString;

constexpr DEVPROPTYPE kUInt32 = 7;
constexpr DEVPROPTYPE kGuid = 13;
constexpr DEVPROPTYPE kString = 18;
constexpr DEVPROPTYPE kStringList = 0x2012;

class PropertyText : public device_tests::DeviceTest {
protected:
    device_tests::BoundedPropertyBuffer buffer;
};

TEST_F(PropertyText, OfANumberIsUnsignedDecimalWithoutPadding) {
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint32_t{0})), L"0");
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint32_t{7})), L"7");
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint32_t{0x80000000})),
              L"2147483648");
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint32_t{0xFFFFFFFF})),
              L"4294967295");
}

TEST_F(PropertyText, OfANumberIsTheFirstFourBytesOnly) {
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint64_t{0x1234567800000005})),
              L"5");
}

TEST_F(PropertyText, OfANumberHasNoGroupsWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    EXPECT_EQ(PropertyToString(kUInt32, buffer.WithBytesOf(std::uint32_t{1234567})), L"1234567");
}

TEST_F(PropertyText, OfAGuidIsUpperCaseInBraces) {
    const GUID guid = {
        0x8c7ed206, 0x3f8a, 0x4827, {0xb3, 0xab, 0xae, 0x9e, 0x1f, 0xae, 0xfc, 0x6c}};
    EXPECT_EQ(PropertyToString(kGuid, buffer.WithBytesOf(guid)),
              L"{8C7ED206-3F8A-4827-B3AB-AE9E1FAEFC6C}");
}

TEST_F(PropertyText, OfAStringEndsAtItsTerminator) {
    EXPECT_EQ(PropertyToString(kString, buffer.With(L"Mouse\0left over"sv)), L"Mouse");
    EXPECT_EQ(PropertyToString(kString, buffer.With(L"\u00FC \u5C4F \xD83D\xDDA8"sv)),
              L"\u00FC \u5C4F \xD83D\xDDA8");
}

TEST_F(PropertyText, OfAStringThatBeginsWithItsTerminatorIsEmpty) {
    EXPECT_EQ(PropertyToString(kString, buffer.With(L"\0Mouse"sv)), L"");
}

TEST_F(PropertyText, OfAStringWithoutTerminatorIsTheWholeBufferAndNoMore) {
    const std::wstring full(2048, L'x');
    EXPECT_EQ(PropertyToString(kString, buffer.With(full)), full);
    EXPECT_EQ(PropertyToString(kString, buffer.With(full.substr(1))), full.substr(1));
}

TEST_F(PropertyText, OfAStringListIsItsStringsInLines) {
    EXPECT_EQ(PropertyToString(kStringList, buffer.With(L"A\0B\0A\0"sv)), L"A\nB");
}

TEST_F(PropertyText, OfAnyOtherTypeIsEmpty) {
    auto& filled = buffer.With(std::wstring(2048, L'A'));
    // All base types and modifiers that fit into 16 bits; the defined ones are far below.
    for (DEVPROPTYPE type = 0; type <= 0xFFFF; ++type) {
        if (type != kUInt32 && type != kGuid && type != kString && type != kStringList) {
            ASSERT_EQ(PropertyToString(type, filled), L"") << "type " << type;
        }
    }
    EXPECT_EQ(PropertyToString(0x10012, filled), L"");
    EXPECT_EQ(PropertyToString(0xFFFFFFFF, filled), L"");
    EXPECT_THAT(Log(), device_tests::IsEmpty());
}

}  // namespace
