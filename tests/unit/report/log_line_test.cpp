#include "report/log_line.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/grouping_locale.h"
#include "support/recorded_log.h"

namespace {

using test_support::LogLine;

class LogLines : public testing::Test {
protected:
    /// The only line so far.
    LogLine TheLine() const {
        const std::vector<LogLine> lines = log.Lines();
        EXPECT_EQ(lines.size(), 1u);
        return lines.empty() ? LogLine{} : lines.front();
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
};

TEST_F(LogLines, EndWithTheFunctionNameInParenthesesAndNothingInBetween) {
    WriteLogLine(LOG_LEVEL_ERROR, "ReportBiosInfo::OnRecvReportInfo", "SmBiosHelper is nullptr");
    EXPECT_EQ(TheLine().text, L"SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)");
}

TEST_F(LogLines, AreWrittenAtTheLevelsThreeAndFour) {
    WriteLogLine(LOG_LEVEL_NORMAL, "F", "a");
    WriteLogLine(LOG_LEVEL_ERROR, "F", "b");
    const std::vector<LogLine> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].level, 3);
    EXPECT_EQ(lines[1].level, 4);
}

TEST_F(LogLines, JoinNarrowTextsNumbersAndWideTextsAsTheyAre) {
    WriteLogLine(LOG_LEVEL_NORMAL, "A::B", "ret=", -7, ",error=", 4294967280ul,
                 ",name=", std::wstring(L"\u00E9\u4E2D"), L" end");
    EXPECT_EQ(TheLine().text, L"ret=-7,error=4294967280,name=\u00E9\u4E2D end(A::B)");
}

TEST_F(LogLines, WriteNumbersWithoutGroupingWhateverTheGlobalLocale) {
    const test_support::GroupingLocale grouping;
    WriteLogLine(LOG_LEVEL_NORMAL, "F", "n=", 1234567, ",m=", -1234567l, ",u=", 1234567ul);
    EXPECT_EQ(TheLine().text, L"n=1234567,m=-1234567,u=1234567(F)");
}

TEST_F(LogLines, ArriveWholeFromSeveralThreads) {
    constexpr int kThreads = 4;
    constexpr int kLinesEach = 50;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < kLinesEach; ++line) {
                WriteLogLine(LOG_LEVEL_NORMAL, "F", "thread ", thread, " line ", line);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int line = 0; line < kLinesEach; ++line) {
            EXPECT_EQ(timeline.Count("log 3 thread " + std::to_string(thread) + " line " +
                                     std::to_string(line) + "(F)"),
                      1u);
        }
    }
}

}  // namespace
