// The timer manager when the process ends, and what must not be done with it and ends the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "support/child_process.h"

namespace {

using testing::AllOf;
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

TEST_F(EndOfTheProcess, IsWhatMustNotBeDone) {
    struct Misuse {
        const wchar_t* scenario;
        const char* said;
        DWORD exitCode;
    };
    for (const auto& [scenario, said, exitCode] :
         {Misuse{L"stop-from-callback", "resource deadlock", 71},
          Misuse{L"throw-from-callback", "exception: from the callback", 72},
          Misuse{L"second-start", "no exception", 73}}) {
        const test_support::ChildResult result = RunScenario(scenario);
        EXPECT_TRUE(result.finished) << result.output;
        EXPECT_THAT(result.output, AllOf(HasSubstr(said), Not(HasSubstr("survived"))));
        EXPECT_EQ(result.exitCode, exitCode);
    }
}

TEST_F(EndOfTheProcess, BeginsWithAManagerThatWasMadeOnFirstUse) {
    EXPECT_THAT(RunScenario(L"first-use").output, HasSubstr("made on first use"));
}

}  // namespace
