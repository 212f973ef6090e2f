// EDIDs that are too short end the process, as what nobody catches does.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "support/child_process.h"

namespace {

using namespace std::chrono_literals;
using test_support::ChildResult;

ChildResult RunWithEdidOf(unsigned size) {
    return test_support::RunChild(
        test_support::ProgramFolder() + L"\\device_sources_short_edid.exe", {std::to_wstring(size)},
        20s);
}

TEST(ShortEdid, EndsTheProcessByAnUncaughtOutOfRangeException) {
    for (unsigned size : {1u, 7u, 8u, 9u}) {
        const ChildResult child = RunWithEdidOf(size);
        EXPECT_TRUE(child.finished) << size;
        EXPECT_EQ(child.exitCode, 77u) << size;
        EXPECT_EQ(child.output, "uncaught std::out_of_range\r\n") << size;
    }
}

TEST(ShortEdid, EndsNothingWhenItIsEmptyOrLongEnough) {
    for (unsigned size : {0u, 10u, 127u, 128u, 256u}) {
        const ChildResult child = RunWithEdidOf(size);
        EXPECT_TRUE(child.finished) << size;
        EXPECT_EQ(child.exitCode, 0u) << size;
        EXPECT_EQ(child.output, size == 0 ? "0 records\r\n" : "1 records\r\n") << size;
    }
}

}  // namespace
