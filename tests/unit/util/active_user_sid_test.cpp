// The chain from the console session to the user's SID.
#include "util/console_user.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "unit/util/office_machine.h"

namespace {

using namespace console_user_test;

class ActiveUserSid : public OnOfficeMachine {};

const Names kNameOfSession{"WTSQueryUserToken", "ImpersonateLoggedOnUser", "GetUserNameExW",
                           "RevertToSelf", "CloseHandle"};
const Names kSidOfName{"LookupAccountNameW", "ConvertSidToStringSidW", "LocalFree"};

Names Join(const std::vector<Names>& parts) {
    Names all;
    for (const Names& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST_F(ActiveUserSid, IsThatOfTheUserAtTheConsoleAndNoOtherSessionIsLookedAt) {
    EXPECT_EQ(GetActiveUserSid(), kAnnSid);
    EXPECT_EQ(world.journal.Names(),
              Join({{"WTSGetActiveConsoleSessionId"}, kNameOfSession, kSidOfName}));
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "1");
}

TEST_F(ActiveUserSid, IsThatOfTheHostWhenNobodyIsAtTheConsole) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.consoleSession = simulation::kNoConsoleSession;
    });
    EXPECT_EQ(GetActiveUserSid(), kHostSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "4294967295");
    EXPECT_EQ(world.journal.Count("WTSEnumerateSessionsW"), 0u);
}

TEST_F(ActiveUserSid, IsThatOfTheHostWhenItMayNotQueryTokens) {
    world.faults.FailEveryCall("WTSQueryUserToken", ERROR_PRIVILEGE_NOT_HELD);
    EXPECT_EQ(GetActiveUserSid(), kHostSid);
    EXPECT_EQ(world.journal.Count("WTSEnumerateSessionsW"), 0u);
}

TEST_F(ActiveUserSid, IsThatOfTheFirstActiveSessionWhenTheConsoleYieldsNone) {
    world.Change([](simulation::Machine& changed) { changed.logons.accounts.erase(L"PC\\ann"); });
    EXPECT_EQ(GetActiveUserSid(), kBobSid);
    EXPECT_EQ(world.journal.Names(),
              Join({{"WTSGetActiveConsoleSessionId"},
                    kNameOfSession,
                    {"LookupAccountNameW", "WTSEnumerateSessionsW", "WTSFreeMemory"},
                    kNameOfSession,
                    kSidOfName}));
    EXPECT_EQ(Argument("WTSEnumerateSessionsW", 0, "server"), "null");
    EXPECT_EQ(Argument("WTSEnumerateSessionsW", 0, "reserved"), "0");
    EXPECT_EQ(Argument("WTSEnumerateSessionsW", 0, "version"), "1");
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "7");
}

TEST_F(ActiveUserSid, MayBeThatOfTheFirstListEntry) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.accounts.erase(L"PC\\ann");
        changed.logons.sessions[0] = {0, WTSActive, L"PC\\cleo", ERROR_SUCCESS};
    });
    EXPECT_EQ(GetActiveUserSid(), kCleoSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "0");
}

TEST_F(ActiveUserSid, MayBeThatOfTheConsoleSessionAskedAgain) {
    world.Change(
        [](simulation::Machine& changed) { changed.logons.sessions[1].state = WTSActive; });
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), kAnnSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "1");
}

TEST_F(ActiveUserSid, IsLookedForInAListThatCameWithAnotherResultThanTrue) {
    using Stub = SuccessAs<decltype(::WTSEnumerateSessionsW), 2>;
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    Stub::original = redirection.Redirect<decltype(::WTSEnumerateSessionsW)>(
        "WTSEnumerateSessionsW", &Stub::Call);
    EXPECT_EQ(GetActiveUserSid(), kBobSid);
}

TEST_F(ActiveUserSid, OfTheFallbackIsReturnedEvenWhenItIsEmpty) {
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), L"");
    // One attempt for the console, one for the first active session, none for the second.
    EXPECT_EQ(world.journal.Count("LookupAccountNameW"), 2u);
}

class NoSidAtTheConsole : public ActiveUserSid {
protected:
    NoSidAtTheConsole() { world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED); }

    /// No further session was asked about its user.
    void ExpectNoSecondAttempt() {
        EXPECT_EQ(world.journal.Count("WTSQueryUserToken"), 1u);
        EXPECT_EQ(world.journal.Count("LookupAccountNameW"), 1u);
    }
};

TEST_F(NoSidAtTheConsole, YieldsNothingWhenTheSessionsCannotBeListed) {
    world.faults.FailCall("WTSEnumerateSessionsW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetActiveUserSid(), L"");
    ExpectNoSecondAttempt();
}

TEST_F(NoSidAtTheConsole, YieldsNothingAndFreesTheListThatCameWithAFailure) {
    using Stub = SuccessAs<decltype(::WTSEnumerateSessionsW), FALSE>;
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    Stub::original = redirection.Redirect<decltype(::WTSEnumerateSessionsW)>(
        "WTSEnumerateSessionsW", &Stub::Call);
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSFreeMemory"), 1u);
    ExpectNoSecondAttempt();
}

TEST_F(NoSidAtTheConsole, YieldsNothingWhenTheListIsNull) {
    world.faults.FailCall("WTSEnumerateSessionsW", 1, 0, FaultVariant::NullResult);
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSFreeMemory"), 0u);
    ExpectNoSecondAttempt();
}

TEST_F(NoSidAtTheConsole, YieldsNothingAndFreesTheListWhenItIsEmpty) {
    world.faults.FailCall("WTSEnumerateSessionsW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSFreeMemory"), 1u);
    ExpectNoSecondAttempt();
}

TEST_F(NoSidAtTheConsole, YieldsNothingWhenNoSessionIsActive) {
    world.Change([](simulation::Machine& changed) {
        for (simulation::Session& session : changed.logons.sessions) {
            session.state = WTSConnected;
        }
    });
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSFreeMemory"), 1u);
    ExpectNoSecondAttempt();
}

TEST_F(ActiveUserSid, IsEmptyWhenNobodyIsLoggedOnAndTheHostHasNoName) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.consoleSession = simulation::kNoConsoleSession;
        changed.logons.sessions.clear();
        changed.logons.hostAccount.clear();
    });
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSEnumerateSessionsW"), 1u);
}

// --- Every call failing in turn ---

struct ChainFault {
    const char* function;
    const wchar_t* sid;  ///< What the chain finds in spite of the failure.
};

class ChainWithAFailure : public ActiveUserSid, public testing::WithParamInterface<ChainFault> {};

/// ~OnOfficeMachine demands that the identity is given back and that nothing stays open.
TEST_P(ChainWithAFailure, FindsWhatCanBeFoundAndLeavesNothingOpen) {
    world.faults.FailCall(GetParam().function, 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetActiveUserSid(), GetParam().sid);
}

INSTANTIATE_TEST_SUITE_P(EachCall, ChainWithAFailure,
                         testing::Values(ChainFault{"WTSGetActiveConsoleSessionId", kHostSid},
                                         ChainFault{"WTSQueryUserToken", kHostSid},
                                         ChainFault{"ImpersonateLoggedOnUser", kHostSid},
                                         ChainFault{"GetUserNameExW", kBobSid},
                                         ChainFault{"LookupAccountNameW", kBobSid},
                                         ChainFault{"ConvertSidToStringSidW", kBobSid}),
                         [](const auto& instance) { return std::string(instance.param.function); });

}  // namespace
