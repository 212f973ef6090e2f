#include "simulation/fault_plan.h"

#include <gtest/gtest.h>

#include <sstream>

namespace simulation {
namespace {

/// The planned errors of the next `calls` calls; 0 stands for none.
std::vector<DWORD> NextErrors(FaultPlan& plan, const char* function, int calls) {
    std::vector<DWORD> errors;
    for (int call = 0; call < calls; ++call) {
        const auto fault = plan.Next(function);
        errors.push_back(fault ? fault->error : 0);
    }
    return errors;
}

TEST(FaultPlan, CountsFromThePlanningOn) {
    FaultPlan plan;
    NextErrors(plan, "OpenPrinterW", 3);
    plan.FailCall("OpenPrinterW", 2, 1801);
    EXPECT_EQ(NextErrors(plan, "OpenPrinterW", 3), (std::vector<DWORD>{0, 1801, 0}));
}

TEST(FaultPlan, FailsEveryCallExceptWhereOneHasItsOwnFault) {
    FaultPlan plan;
    plan.FailCall("OpenPrinterW", 2, 5);
    plan.FailEveryCall("OpenPrinterW", 1801);
    EXPECT_EQ(NextErrors(plan, "OpenPrinterW", 3), (std::vector<DWORD>{1801, 5, 1801}));
}

TEST(FaultPlan, ReportsFaultsThatNoCallMet) {
    FaultPlan plan;
    plan.FailCall("CreateFileW", 1, 5);
    plan.FailCall("CreateFileW", 3, 32);
    plan.FailEveryCall("ClosePrinter", 6);
    NextErrors(plan, "CreateFileW", 2);
    const std::vector<Fault> missed = plan.Missed();
    ASSERT_EQ(missed.size(), 2u);
    EXPECT_EQ(missed[0].call, 3u);
    EXPECT_EQ(missed[1].function, "ClosePrinter");
    std::ostringstream text;
    text << missed[0] << ", " << missed[1];
    EXPECT_EQ(text.str(), "CreateFileW (call 3) Fail 32, ClosePrinter (every call) Fail 6");
}

}  // namespace
}  // namespace simulation
