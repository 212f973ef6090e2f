#include "util/fixed_text.h"

#include <gtest/gtest.h>

namespace {

TEST(FixedText, EndsAtTheFirstTerminator) {
    const wchar_t buffer[8] = L"ab\0cd";
    EXPECT_EQ(TextOf(buffer), L"ab");
}

TEST(FixedText, IsEmptyWhenTheBufferBeginsWithATerminator) {
    const wchar_t buffer[4] = {L'\0', L'a', L'b', L'c'};
    EXPECT_EQ(TextOf(buffer), L"");
}

TEST(FixedText, IsTheWholeBufferWithoutATerminator) {
    const struct {
        wchar_t text[3];
        wchar_t behind;
    } record = {{L'a', L'b', L'c'}, L'd'};
    EXPECT_EQ(TextOf(record.text), L"abc");
}

TEST(FixedText, MayFillTheBufferUpToItsTerminator) {
    const wchar_t buffer[4] = L"abc";
    EXPECT_EQ(TextOf(buffer), L"abc");
}

}  // namespace
