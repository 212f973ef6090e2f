#include "report/log_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/grouping_locale.h"
#include "support/recorded_log.h"

namespace {

TEST(LogLines, JoinTextsAndUngroupedNumbersAndEndWithTheFunctionNameInParentheses) {
    test_support::Timeline timeline;
    const test_support::RecordedLog log(timeline);
    const test_support::GroupingLocale grouping;
    WriteLogLine(LOG_LEVEL_NORMAL, "A::B", "ret=", -1234567, ",error=", 4294967280ul,
                 ",name=", std::wstring(L"\u00E9\u4E2D"), L" end");
    WriteLogLine(LOG_LEVEL_ERROR, "F", "b");
    const std::vector<test_support::LogLine> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, L"ret=-1234567,error=4294967280,name=\u00E9\u4E2D end(A::B)");
    EXPECT_EQ(lines[0].level, 3);
    EXPECT_EQ(lines[1].text, L"b(F)");
    EXPECT_EQ(lines[1].level, 4);
}

}  // namespace
