#include <gtest/gtest.h>

#include <string>

#include "device_reporter/device_properties.h"
#include "unit/device_reporter/property_buffer.h"

namespace {

using namespace std::literals;
using DeviceReporter::JoinStringList;

class StringList : public testing::Test {
protected:
    device_tests::BoundedPropertyBuffer buffer;
};

TEST_F(StringList, GivesOneLineForEachString) {
    EXPECT_EQ(JoinStringList(buffer.With(L"USB\\VID_046D\0USB\\Class_03\0"sv)),
              L"USB\\VID_046D\nUSB\\Class_03");
}

TEST_F(StringList, NamesAStringOnce) {
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0B\0A\0"sv)), L"A\nB");
}

TEST_F(StringList, LeavesOutAStringThatIsPartOfAnEarlierOne) {
    EXPECT_EQ(JoinStringList(buffer.With(L"AB\0B\0"sv)), L"AB");
}

TEST_F(StringList, KeepsAStringThatContainsAnEarlierOne) {
    EXPECT_EQ(JoinStringList(buffer.With(L"B\0AB\0"sv)), L"B\nAB");
}

TEST_F(StringList, EndsAtTheFirstEmptyString) {
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0\0B\0"sv)), L"A");
    EXPECT_EQ(JoinStringList(buffer.With(L"\0A\0"sv)), L"");
    EXPECT_EQ(JoinStringList(buffer.With(L""sv)), L"");
}

TEST_F(StringList, EndsWithTheBufferWhereTheLastStringHasNoTerminator) {
    const std::wstring last(2046, L'x');
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0"s + last)), L"A\n" + last);
    EXPECT_EQ(JoinStringList(buffer.With(std::wstring(2048, L'x'))), std::wstring(2048, L'x'));
}

TEST_F(StringList, EndsWithTheBufferWhereTheLastTerminatorIsItsLastUnit) {
    const std::wstring first(2047, L'x');
    EXPECT_EQ(JoinStringList(buffer.With(first)), first);
    const std::wstring last(2045, L'x');
    EXPECT_EQ(JoinStringList(buffer.With(L"A\0"s + last)), L"A\n" + last);
}

TEST_F(StringList, TakesAStringOfOneUnitAtTheVeryEnd) {
    const std::wstring first(2046, L'x');
    EXPECT_EQ(JoinStringList(buffer.With(first + L'\0' + L'A')), first + L"\nA");
}

}  // namespace
