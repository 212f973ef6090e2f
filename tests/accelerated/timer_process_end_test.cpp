// The timer manager when the process ends, and what must not be done with it and ends the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "support/child_process.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// Longer than any scenario needs: a hundred seconds of real time.
constexpr std::chrono::hours kPatience{1000};

class EndOfTheProcess : public testing::Test {
protected:
    static test_support::ChildResult RunScenario(const wchar_t* scenario) {
        return test_support::RunChild(test_support::ProgramFolder() + L"\\timer_probe.exe",
                                      {scenario}, kPatience);
    }
};

TEST_F(EndOfTheProcess, IsAStopFromACallbackWithTheResourceDeadlockError) {
    const test_support::ChildResult result = RunScenario(L"stop-from-callback");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("resource deadlock"));
    EXPECT_THAT(result.output, Not(HasSubstr("survived")));
    EXPECT_EQ(result.exitCode, 71u);
}

TEST_F(EndOfTheProcess, IsAnExceptionThatLeavesACallback) {
    const test_support::ChildResult result = RunScenario(L"throw-from-callback");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("exception: from the callback"));
    EXPECT_EQ(result.exitCode, 72u);
}

TEST_F(EndOfTheProcess, IsASecondStartWhileTheLoopRuns) {
    const test_support::ChildResult result = RunScenario(L"second-start");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_THAT(result.output, HasSubstr("no exception"));
    EXPECT_THAT(result.output, Not(HasSubstr("survived")));
    EXPECT_EQ(result.exitCode, 73u);
}

TEST_F(EndOfTheProcess, BeginsWithAManagerThatWasMadeOnFirstUse) {
    EXPECT_THAT(RunScenario(L"first-use").output, HasSubstr("made on first use"));
}

}  // namespace
