// From the console session to the user's name and SID.
#include "util/console_user.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulation/fakes/heap.h"
#include "unit/util/office_machine.h"

namespace {

using namespace console_user_test;

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

// --- A session's user ---

class SessionUserName : public OnOfficeMachine {};

TEST_F(SessionUserName, IsAskedForAsTheSessionsUser) {
    EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "RevertToSelf", "CloseHandle"}));
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "7");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "format"), "2");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "size"), "260");
}

struct NameFault {
    const char* function;
    FaultVariant variant;
    const wchar_t* name;
    Names calls;
};

TEST_F(SessionUserName, IsThatOfTheHostOrNoneWhenACallFailsAndEverythingIsGivenBack) {
    constexpr wchar_t kHost[] = L"NT AUTHORITY\\SYSTEM";
    for (const auto& [function, variant, name, calls] :
         {NameFault{"WTSQueryUserToken",
                    FaultVariant::Fail,
                    kHost,
                    {"WTSQueryUserToken", "GetUserNameExW"}},
          NameFault{"WTSQueryUserToken",
                    FaultVariant::NullResult,
                    kHost,
                    {"WTSQueryUserToken", "ImpersonateLoggedOnUser", "GetUserNameExW"}},
          NameFault{
              "ImpersonateLoggedOnUser",
              FaultVariant::Fail,
              kHost,
              {"WTSQueryUserToken", "ImpersonateLoggedOnUser", "GetUserNameExW", "CloseHandle"}},
          NameFault{"GetUserNameExW", FaultVariant::Fail, L"", kNameOfSession},
          NameFault{"GetUserNameExW", FaultVariant::ShortSize, L"", kNameOfSession},
          NameFault{"GetUserNameExW", FaultVariant::SuccessWithNothing, L"", kNameOfSession}}) {
        world.journal.Clear();
        world.faults.FailCall(function, 1, ERROR_ACCESS_DENIED, variant);
        EXPECT_EQ(GetSessionUserName(kRemote), name);
        EXPECT_EQ(world.journal.Names(), calls) << function;
    }
}

TEST_F(SessionUserName, MayFillTheBuffer) {
    const std::wstring name = L"PC\\" + std::wstring(256, L'u');  // With its NUL: 260.
    world.Change([&](simulation::Machine& changed) { changed.logons.sessions[2].userName = name; });
    EXPECT_EQ(GetSessionUserName(kRemote), name);
}

// --- An account's SID ---

class UserSid : public OnOfficeMachine {};

TEST_F(UserSid, IsLookedUpOnTheLocalSystemWithBuffersOf260) {
    EXPECT_EQ(GetUserSid(L"PC\\bob"), kBobSid);
    EXPECT_EQ(world.journal.Names(), kSidOfName);
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "system"), "null");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "account"), "PC\\bob");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "sidSize"), "260");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "domainSize"), "260");
}

TEST_F(UserSid, OfAnEmptyNameIsWhatTheSystemFindsForIt) {
    GetUserSid(L"");
    ASSERT_EQ(world.journal.Count("LookupAccountNameW"), 1u);
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "account"), "");
}

TEST_F(UserSid, IsEmptyForAnUnknownAccountOneWithoutTextAndWithoutMemory) {
    EXPECT_EQ(GetUserSid(L"PC\\nobody"), L"");
    EXPECT_EQ(world.journal.Count("ConvertSidToStringSidW"), 0u);
    world.faults.FailCall("ConvertSidToStringSidW", 1, ERROR_INVALID_SID);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(world.journal.Count("LocalFree"), 0u);
    world.journal.Clear();
    const simulation::MallocFailure memory(260);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(memory.Count(), 1u);
    EXPECT_EQ(world.journal.Names(), Names{});
}

// --- From one to the other ---

class ActiveUserSid : public OnOfficeMachine {};

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

TEST_F(ActiveUserSid, MayBeThatOfTheFirstListEntryOrOfTheConsoleSessionAskedAgain) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.sessions[0] = {0, WTSActive, L"PC\\cleo", ERROR_SUCCESS};
    });
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), kCleoSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "0");
    world.journal.Clear();
    world.Change([](simulation::Machine& changed) {
        changed.logons.sessions[0].state = WTSConnected;
        changed.logons.sessions[1].state = WTSActive;
    });
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), kAnnSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "1");
}

TEST_F(ActiveUserSid, OfTheFallbackIsReturnedEvenWhenItIsEmpty) {
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), L"");
    // One attempt for the console, one for the first active session, none for the second.
    EXPECT_EQ(world.journal.Count("LookupAccountNameW"), 2u);
}

struct ListFault {
    FaultVariant variant;
    std::size_t freed;
};

TEST_F(ActiveUserSid, IsEmptyWithoutASecondAttemptWhenTheListTellsNoActiveSession) {
    const auto expectNone = [this](std::size_t freed) {
        world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
        world.journal.Clear();
        EXPECT_EQ(GetActiveUserSid(), L"");
        EXPECT_EQ(world.journal.Count("WTSFreeMemory"), freed);
        EXPECT_EQ(world.journal.Count("WTSQueryUserToken"), 1u);
        EXPECT_EQ(world.journal.Count("LookupAccountNameW"), 1u);
    };
    for (const auto& [variant, freed] :
         {ListFault{FaultVariant::Fail, 0}, ListFault{FaultVariant::NullResult, 0},
          ListFault{FaultVariant::SuccessWithNothing, 1}}) {
        world.faults.FailCall("WTSEnumerateSessionsW", 1, ERROR_ACCESS_DENIED, variant);
        expectNone(freed);
    }
    world.Change([](simulation::Machine& changed) {
        for (simulation::Session& session : changed.logons.sessions) {
            session.state = WTSConnected;
        }
    });
    expectNone(1);
}

struct ChainFault {
    const char* function;
    const wchar_t* sid;  ///< What the chain finds in spite of the failure.
};

/// ~OnOfficeMachine demands that the identity is given back and that nothing stays open.
TEST_F(ActiveUserSid, IsWhatCanBeFoundWhenACallFails) {
    for (const auto& [function, sid] :
         {ChainFault{"WTSGetActiveConsoleSessionId", kHostSid},
          ChainFault{"WTSQueryUserToken", kHostSid},
          ChainFault{"ImpersonateLoggedOnUser", kHostSid},
          ChainFault{"GetUserNameExW", kBuiltInSid}, ChainFault{"LookupAccountNameW", kBobSid},
          ChainFault{"ConvertSidToStringSidW", kBobSid}}) {
        world.faults.FailCall(function, 1, ERROR_ACCESS_DENIED);
        EXPECT_EQ(GetActiveUserSid(), sid) << function;
    }
}

}  // namespace
