// What the plug-in does to the life of its process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "simulation/call_text.h"
#include "support/child_process.h"

namespace {

using test_support::ChildResult;
using testing::HasSubstr;
using testing::Not;

ChildResult RunScenario(const wchar_t* scenario) {
    return test_support::RunChild(test_support::ProgramFolder() + L"\\lifecycle_probe.exe",
                                  {scenario});
}

/// "exit-at-once" as part of a test's name.
std::string TestName(const testing::TestParamInfo<const wchar_t*>& scenario) {
    std::string name = simulation::ToUtf8(scenario.param);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class ProcessExit : public testing::TestWithParam<const wchar_t*> {};

TEST_P(ProcessExit, ComesAtOnceWithItsExitCode) {
    const ChildResult result = RunScenario(GetParam());
    EXPECT_TRUE(result.finished) << "the process hangs; it said: " << result.output;
    EXPECT_EQ(result.exitCode, 42u) << result.output;
}

INSTANTIATE_TEST_SUITE_P(WithoutStop, ProcessExit,
                         testing::Values(L"exit-after-start", L"exit-with-devices",
                                         L"exit-at-once"),
                         TestName);
INSTANTIATE_TEST_SUITE_P(AfterStop, ProcessExit, testing::Values(L"exit-after-stop"), TestName);

class Unload : public testing::TestWithParam<const wchar_t*> {};

TEST_P(Unload, DoesNotPullTheCodeFromUnderAThread) {
    const ChildResult result = RunScenario(GetParam());
    EXPECT_TRUE(result.finished) << "the process hangs; it said: " << result.output;
    EXPECT_EQ(result.exitCode, 42u) << result.output;
    EXPECT_THAT(result.output, HasSubstr("started"));
    EXPECT_THAT(result.output, HasSubstr("mapped"));
    EXPECT_THAT(result.output, Not(HasSubstr("there is no monitor")));
}

INSTANTIATE_TEST_SUITE_P(WithoutStop, Unload,
                         testing::Values(L"unload-without-stop",
                                         L"unload-with-devices-without-stop"),
                         TestName);
INSTANTIATE_TEST_SUITE_P(AfterAStopBeforeTheWindow, Unload,
                         testing::Values(L"stop-before-the-window"), TestName);

TEST(UnloadRightAfterStop, IsDoneOnceTheMonitorHasEnded) {
    const ChildResult result = RunScenario(L"unload-right-after-stop-with-devices");
    EXPECT_TRUE(result.finished) << "the process hangs; it said: " << result.output;
    EXPECT_EQ(result.exitCode, 42u) << result.output;
    EXPECT_THAT(result.output, HasSubstr("gone"));
    EXPECT_THAT(result.output, Not(HasSubstr("mapped")));
}

TEST(SecondStartOfARunningPlugin, EndsTheProcess) {
    const ChildResult result = RunScenario(L"second-start");
    EXPECT_TRUE(result.finished) << result.output;
    EXPECT_NE(result.exitCode, 42u);
    EXPECT_NE(result.exitCode, 0u);
    EXPECT_THAT(result.output, HasSubstr("started"));
    EXPECT_THAT(result.output, Not(HasSubstr("survived")));
}

}  // namespace
