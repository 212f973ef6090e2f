// Which libraries the built library loads, from before its entry point until it is unmapped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "faults/simulated_load.h"
#include "simulation/call_text.h"
#include "support/child_process.h"

namespace {

using testing::Each;
using testing::SizeIs;

TEST(LoaderCalls, NameTheManagerByItsFullPath) {
    std::vector<std::string> names;
    const simulation::Machine machine;
    {
        const faults_test::SimulatedLoad load(
            machine, [](simulation::World&) {},
            [&names](simulation::World& world) {
                for (const simulation::JournalEntry& call : world.journal.Calls("LoadLibraryW")) {
                    names.push_back(call["name"]);
                }
            });
        ASSERT_NE(load.Module(), nullptr);
    }
    // Once to register, once to withdraw: the host has not loaded the manager.
    EXPECT_THAT(names, SizeIs(2));
    EXPECT_THAT(
        names, Each(simulation::ToUtf8(test_support::ProgramFolder()) + "\\ZedPluginsManager.dll"));
}

}  // namespace
