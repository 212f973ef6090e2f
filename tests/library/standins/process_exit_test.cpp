#include <gtest/gtest.h>

#include <chrono>

#include "support/child_process.h"

namespace {

TEST(ProcessExit, IsNotHeldUpByThreadsThatDieInsideTheLibraries) {
    const test_support::ChildResult child =
        test_support::RunChild(test_support::ProgramFolder() + L"\\standins_exit_probe_host.exe",
                               /*arguments=*/{}, std::chrono::seconds(20));
    EXPECT_TRUE(child.finished) << child.output;
    EXPECT_EQ(child.exitCode, 7u) << child.output;
}

}  // namespace
