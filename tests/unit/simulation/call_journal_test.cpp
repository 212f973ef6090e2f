#include "simulation/call_journal.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

namespace simulation {
namespace {

using ::testing::ElementsAre;

void Note(CallJournal& journal, const char* function, std::vector<CallArgument> arguments = {}) {
    journal.Finish(journal.Begin(function), std::move(arguments), "1", 0);
}

TEST(CallJournal, ComplainsAboutAnArgumentThatWasNotJournalled) {
    CallJournal journal;
    Note(journal, "SetupDiGetClassDevsW", {{"flags", "6"}, {"window", "null"}});
    try {
        journal.Entries()[0]["flag"];
        FAIL() << "an argument was made up";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(),
                     "SetupDiGetClassDevsW was journalled without an argument \"flag\"; it has: "
                     "flags window");
    }
}

TEST(CallJournal, ForgetsOnDemandAndThenIgnoresTheEndOfForgottenCalls) {
    CallJournal journal;
    const auto forgotten = journal.Begin("GetMessageW");
    journal.Clear();
    Note(journal, "PostMessageW");
    journal.Finish(forgotten, {}, "0", 0);
    EXPECT_THAT(journal.Names(), ElementsAre("PostMessageW"));
    EXPECT_EQ(journal.Entries()[0].sequence, 1u);
    EXPECT_EQ(journal.Entries()[0].result, "1");
}

TEST(CallJournal, TakesCallsOfSeveralThreadsWithoutLosingAny) {
    constexpr std::size_t kThreads = 4;
    constexpr std::size_t kCalls = 2000;
    CallJournal journal;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&journal] {
            for (std::size_t call = 0; call < kCalls; ++call) {
                const auto number = journal.Begin("Call");
                journal.Finish(number, {{"number", std::to_string(number)}}, "1", 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<JournalEntry> entries = journal.Entries();
    ASSERT_EQ(entries.size(), kThreads * kCalls);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        ASSERT_EQ(entries[i].sequence, i);
        ASSERT_EQ(entries[i]["number"], std::to_string(i));
    }
}

}  // namespace
}  // namespace simulation
