#include <gtest/gtest.h>

#include "device_reporter/device_text.h"

namespace {

using DeviceReporter::AppendUnique;

TEST(AppendUnique, IsTheExistingTextWhenNothingIsAdded) {
    EXPECT_EQ(AppendUnique(L"Foo", L""), L"Foo");
    EXPECT_EQ(AppendUnique(L"", L""), L"");
}

TEST(AppendUnique, IsTheAddedTextWhenThereIsNoneYet) {
    EXPECT_EQ(AppendUnique(L"", L"Foo"), L"Foo");
}

TEST(AppendUnique, PutsTheAddedTextOnALineOfItsOwn) {
    EXPECT_EQ(AppendUnique(L"Foo", L"Bar"), L"Foo\nBar");
    EXPECT_EQ(AppendUnique(L"Foo\nBar", L"Baz"), L"Foo\nBar\nBaz");
}

TEST(AppendUnique, LeavesOutWhatIsThereAlready) {
    EXPECT_EQ(AppendUnique(L"Foo", L"Foo"), L"Foo");
    EXPECT_EQ(AppendUnique(L"Foo\nBar\nBaz", L"Bar"), L"Foo\nBar\nBaz");
}

TEST(AppendUnique, LeavesOutWhatIsOnlyAPartOfALine) {
    EXPECT_EQ(AppendUnique(L"USB Mouse", L"Mouse"), L"USB Mouse");
    EXPECT_EQ(AppendUnique(L"USB Mouse", L"USB"), L"USB Mouse");
    EXPECT_EQ(AppendUnique(L"USB Mouse", L"B M"), L"USB Mouse");
}

TEST(AppendUnique, LeavesOutWhatSpansTwoLines) {
    EXPECT_EQ(AppendUnique(L"AB\nCD", L"B\nC"), L"AB\nCD");
}

TEST(AppendUnique, AddsATextThatContainsTheExistingOne) {
    EXPECT_EQ(AppendUnique(L"Mouse", L"USB Mouse"), L"Mouse\nUSB Mouse");
}

TEST(AppendUnique, TellsLetterCasesApart) {
    EXPECT_EQ(AppendUnique(L"Mouse", L"mouse"), L"Mouse\nmouse");
}

}  // namespace
