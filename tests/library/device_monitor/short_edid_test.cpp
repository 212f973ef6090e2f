// What a monitor's EDID that is too short does to the process: nobody catches the exception.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "library/device_monitor/passing_hours.h"
#include "support/child_process.h"

namespace {

using test_support::ChildResult;
using testing::HasSubstr;
using testing::Not;

class ListWithAnEdid : public testing::Test {
protected:
    void SetUp() override {
        if (!device_monitor_test::kHoursCanPass) {
            GTEST_SKIP() << "the timer loop waits in a library of the compiler's";
        }
    }

    static ChildResult RunWithEdidOf(unsigned size) {
        return test_support::RunChild(test_support::ProgramFolder() + L"\\short_edid_probe.exe",
                                      {std::to_wstring(size)}, std::chrono::seconds(60));
    }
};

TEST_F(ListWithAnEdid, OfFullLengthIsSent) {
    const ChildResult child = RunWithEdidOf(128);
    EXPECT_TRUE(child.finished) << child.output;
    EXPECT_EQ(child.exitCode, 42u) << child.output;
    EXPECT_EQ(child.output, "monitoring\r\nthe list is due\r\nsent\r\n");
}

TEST_F(ListWithAnEdid, ThatIsTooShortEndsTheProcessByAnUncaughtException) {
    for (const unsigned size : {1u, 8u, 9u}) {
        const ChildResult child = RunWithEdidOf(size);
        EXPECT_TRUE(child.finished) << child.output;
        // What the C runtime's abort returns.
        EXPECT_EQ(child.exitCode, 3u) << child.output;
        EXPECT_THAT(child.output, HasSubstr("the list is due"));
        EXPECT_THAT(child.output, HasSubstr("std::out_of_range"));
        EXPECT_THAT(child.output, Not(HasSubstr("sent")));
    }
}

}  // namespace
