#include <gtest/gtest.h>

#include "support/child_process.h"

namespace {

TEST(ProcessEnd, IsNotHeldUpByThreadsThatDieInsideTheLibraries) {
    const test_support::ChildResult child =
        test_support::RunChild(test_support::ProgramFolder() + L"\\standins_exit_probe_host.exe",
                               /*arguments=*/{});
    EXPECT_TRUE(child.finished) << child.output;
    EXPECT_EQ(child.exitCode, 7u) << child.output;
}

}  // namespace
