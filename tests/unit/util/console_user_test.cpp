// The chain from the console session to the user's SID, on simulated sessions and accounts.
#include "util/console_user.h"

#include <gtest/gtest.h>
#include <windows.h>
// windows.h has to come first.
#include <sddl.h>
#define SECURITY_WIN32
#include <security.h>
#include <wtsapi32.h>

#include <algorithm>
#include <string>
#include <vector>

#include "simulation/fakes/accounts.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/sessions.h"
#include "simulation/simulated_machine.h"

namespace {

using simulation::FaultVariant;
using Names = std::vector<std::string>;

constexpr DWORD kConsole = 1;
constexpr DWORD kRemote = 7;
constexpr wchar_t kAnnSid[] = L"S-1-5-21-1-2-3-1001";
constexpr wchar_t kBobSid[] = L"S-1-5-21-1-2-3-1002";
constexpr wchar_t kCleoSid[] = L"S-1-5-21-1-2-3-1003";
constexpr wchar_t kHostSid[] = L"S-1-5-18";

/// Ann sits at the console, Bob works remotely, Cleo's session is behind his.
simulation::Machine OfficeMachine() {
    simulation::Machine machine;
    machine.logons.consoleSession = kConsole;
    machine.logons.sessions = {{0, WTSDisconnected, L"", ERROR_SUCCESS},
                               {kConsole, WTSConnected, L"PC\\ann", ERROR_SUCCESS},
                               {kRemote, WTSActive, L"PC\\bob", ERROR_SUCCESS},
                               {8, WTSActive, L"PC\\cleo", ERROR_SUCCESS}};
    machine.logons.accounts = {{L"PC\\ann", kAnnSid},
                               {L"PC\\bob", kBobSid},
                               {L"PC\\cleo", kCleoSid},
                               {L"NT AUTHORITY\\SYSTEM", kHostSid}};
    return machine;
}

class ConsoleUser : public testing::Test {
protected:
    ~ConsoleUser() override {
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
        EXPECT_TRUE(world.faults.Missed().empty());
    }

    std::string Argument(const char* function, std::size_t call, const char* name) {
        const std::vector<simulation::JournalEntry> calls = world.journal.Calls(function);
        return call < calls.size() ? calls[call][name] : "no such call";
    }

    simulation::SimulatedMachine machine{
        GetModuleHandleW(nullptr),
        OfficeMachine(),
        {simulation::InstallHandleFakes, simulation::InstallSessionFakes,
         simulation::InstallAccountFakes, simulation::InstallHeapFakes}};
    simulation::World& world = machine.world();
};

// --- GetUserSid ---

TEST_F(ConsoleUser, SidOfAnAccountIsItsText) { EXPECT_EQ(GetUserSid(L"PC\\bob"), kBobSid); }

TEST_F(ConsoleUser, SidIsLookedUpOnTheLocalSystemWithBuffersOf260) {
    GetUserSid(L"PC\\bob");
    EXPECT_EQ(world.journal.Names(),
              (Names{"LookupAccountNameW", "ConvertSidToStringSidW", "LocalFree"}));
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "system"), "null");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "account"), "PC\\bob");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "sidSize"), "260");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "domainSize"), "260");
}

TEST_F(ConsoleUser, SidIsEmptyForAnUnknownAccount) {
    EXPECT_EQ(GetUserSid(L"PC\\nobody"), L"");
    EXPECT_EQ(world.journal.Names(), Names{"LookupAccountNameW"});
}

TEST_F(ConsoleUser, SidIsEmptyWhenTheLookupFails) {
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(world.journal.Count("ConvertSidToStringSidW"), 0u);
}

TEST_F(ConsoleUser, SidIsEmptyWhenTheBuffersAreTooSmall) {
    world.faults.FailCall("LookupAccountNameW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
}

TEST_F(ConsoleUser, SidIsEmptyWhenItHasNoText) {
    world.faults.FailCall("ConvertSidToStringSidW", 1, ERROR_INVALID_SID);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(world.journal.Count("LocalFree"), 0u);
}

TEST_F(ConsoleUser, SidIsEmptyWhenMemoryRunsOut) {
    const simulation::MallocFailure memory(260);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(memory.Count(), 1u);
    EXPECT_TRUE(world.journal.Names().empty());
}

// --- GetSessionUserName ---

TEST_F(ConsoleUser, NameIsAskedForAsTheSessionsUser) {
    EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "RevertToSelf", "CloseHandle"}));
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "7");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "format"), "2");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "size"), "260");
}

TEST_F(ConsoleUser, NameIsThatOfTheHostWithoutAToken) {
    world.faults.FailCall("WTSQueryUserToken", 1, ERROR_PRIVILEGE_NOT_HELD);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "GetUserNameExW"}));
}

TEST_F(ConsoleUser, NameIsThatOfTheHostWhenTheTokenIsRefusedForImpersonation) {
    world.faults.FailCall("ImpersonateLoggedOnUser", 1, ERROR_BAD_IMPERSONATION_LEVEL);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "CloseHandle"}));
}

TEST_F(ConsoleUser, NameIsEmptyWhenItCannotBeReadAndTheIdentityIsGivenBack) {
    world.faults.FailCall("GetUserNameExW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "RevertToSelf", "CloseHandle"}));
}

TEST_F(ConsoleUser, NameIsEmptyWhenTheBufferIsTooSmall) {
    world.faults.FailCall("GetUserNameExW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
}

TEST_F(ConsoleUser, NameIsEmptyWhenNothingIsWritten) {
    world.faults.FailCall("GetUserNameExW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
}

TEST_F(ConsoleUser, NameMayFillTheBuffer) {
    const std::wstring name = L"PC\\" + std::wstring(256, L'u');  // With its NUL: 260.
    world.Change([&](simulation::Machine& changed) { changed.logons.sessions[2].userName = name; });
    EXPECT_EQ(GetSessionUserName(kRemote), name);
}

TEST_F(ConsoleUser, NameOfANullTokenIsThatOfTheHost) {
    world.faults.FailCall("WTSQueryUserToken", 1, 0, FaultVariant::NullResult);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Count("CloseHandle"), 0u);
}

// --- Only TRUE is success ---

/// Calls what stood in the import table before and reports success as 2.
template <class Function>
struct Two;
template <class... Arguments>
struct Two<BOOL WINAPI(Arguments...)> {
    static BOOL WINAPI Call(Arguments... arguments) {
        return original(arguments...) == TRUE ? 2 : FALSE;
    }
    static inline BOOL(WINAPI* original)(Arguments...) = nullptr;
};

TEST_F(ConsoleUser, TokenWithAnotherResultThanTrueIsClosedButNotUsed) {
    using Stub = Two<decltype(::WTSQueryUserToken)>;
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    Stub::original =
        redirection.Redirect<decltype(::WTSQueryUserToken)>("WTSQueryUserToken", &Stub::Call);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "GetUserNameExW", "CloseHandle"}));
}

TEST_F(ConsoleUser, ImpersonationWithAnotherResultThanTrueIsNotReverted) {
    using Stub = Two<decltype(::ImpersonateLoggedOnUser)>;
    {
        simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
        Stub::original = redirection.Redirect<decltype(::ImpersonateLoggedOnUser)>(
            "ImpersonateLoggedOnUser", &Stub::Call);
        EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
    }
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "CloseHandle"}));
    RevertToSelf();  // What the system began in spite of its answer.
}

TEST_F(ConsoleUser, SidTextWithAnotherResultThanTrueIsNotUsed) {
    using Stub = Two<decltype(::ConvertSidToStringSidW)>;
    {
        simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
        Stub::original = redirection.Redirect<decltype(::ConvertSidToStringSidW)>(
            "ConvertSidToStringSidW", &Stub::Call);
        EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    }
    EXPECT_EQ(world.journal.Count("LocalFree"), 0u);
    for (const simulation::OpenResource& leftBySystem : world.ledger.Open()) {
        LocalFree(leftBySystem.value);
    }
}

// --- The buffers ---

bool IsZero(const void* bytes, std::size_t size) {
    const auto* const begin = static_cast<const BYTE*>(bytes);
    return std::all_of(begin, begin + size, [](BYTE byte) { return byte == 0; });
}

bool bufferWasZero = false;
std::wstring nameToWrite;

BOOLEAN SEC_ENTRY WriteName(EXTENDED_NAME_FORMAT, wchar_t* name, ULONG* size) {
    bufferWasZero = IsZero(name, *size * sizeof(wchar_t));
    nameToWrite.copy(name, nameToWrite.size());
    *size = static_cast<ULONG>(nameToWrite.size());
    return TRUE;
}

BOOL WINAPI LookAtBuffers(const wchar_t*, const wchar_t*, void* sid, DWORD* sidSize,
                          wchar_t* domain, DWORD* domainSize, SID_NAME_USE*) {
    bufferWasZero = IsZero(sid, *sidSize) && IsZero(domain, *domainSize * sizeof(wchar_t));
    *sidSize = 0;
    *domainSize = 0;
    return FALSE;
}

class UserNameBuffer : public testing::Test {
protected:
    UserNameBuffer() {
        bufferWasZero = false;
        redirection.Redirect<decltype(::GetUserNameExW)>("GetUserNameExW", &WriteName);
    }

    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

TEST_F(UserNameBuffer, IsZeroBeforeTheNameIsRead) {
    nameToWrite = L"";
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
    EXPECT_TRUE(bufferWasZero);
}

TEST_F(UserNameBuffer, IsReadUpToItsFirstNul) {
    nameToWrite = std::wstring(L"PC\\bob\0rest", 11);
    EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
}

TEST_F(UserNameBuffer, IsReadToItsEndWhenItHoldsNoNul) {
    nameToWrite = std::wstring(260, L'u');
    EXPECT_EQ(GetSessionUserName(kRemote), nameToWrite);
}

TEST(SidBuffers, AreZeroBeforeTheLookup) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    redirection.Redirect<decltype(::LookupAccountNameW)>("LookupAccountNameW", &LookAtBuffers);
    bufferWasZero = false;
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_TRUE(bufferWasZero);
}

// --- GetActiveUserSid ---

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

TEST_F(ConsoleUser, SidIsThatOfTheUserAtTheConsoleAndNoOtherSessionIsLookedAt) {
    EXPECT_EQ(GetActiveUserSid(), kAnnSid);
    EXPECT_EQ(world.journal.Names(),
              Join({{"WTSGetActiveConsoleSessionId"}, kNameOfSession, kSidOfName}));
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "1");
}

TEST_F(ConsoleUser, SidIsThatOfTheHostWhenNobodyIsAtTheConsole) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.consoleSession = simulation::kNoConsoleSession;
    });
    EXPECT_EQ(GetActiveUserSid(), kHostSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "4294967295");
    EXPECT_EQ(world.journal.Count("WTSEnumerateSessionsW"), 0u);
}

TEST_F(ConsoleUser, SidIsThatOfTheHostWhenItMayNotQueryTokens) {
    world.faults.FailEveryCall("WTSQueryUserToken", ERROR_PRIVILEGE_NOT_HELD);
    EXPECT_EQ(GetActiveUserSid(), kHostSid);
    EXPECT_EQ(world.journal.Count("WTSEnumerateSessionsW"), 0u);
}

TEST_F(ConsoleUser, SidIsThatOfTheFirstActiveSessionWhenTheConsoleYieldsNone) {
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

TEST_F(ConsoleUser, FirstEntryOfTheListMayBeTheActiveOne) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.accounts.erase(L"PC\\ann");
        changed.logons.sessions[0] = {3, WTSActive, L"PC\\cleo", ERROR_SUCCESS};
    });
    EXPECT_EQ(GetActiveUserSid(), kCleoSid);
}

TEST_F(ConsoleUser, FallbackMayPickTheConsoleSessionAgain) {
    world.Change(
        [](simulation::Machine& changed) { changed.logons.sessions[1].state = WTSActive; });
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), kAnnSid);
    EXPECT_EQ(Argument("WTSQueryUserToken", 1, "sessionId"), "1");
}

TEST_F(ConsoleUser, SidOfTheFallbackIsReturnedEvenWhenItIsEmpty) {
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    EXPECT_EQ(GetActiveUserSid(), L"");
    // One attempt for the console, one for the first active session, none for the second.
    EXPECT_EQ(world.journal.Count("LookupAccountNameW"), 2u);
}

class NoSidAtTheConsole : public ConsoleUser {
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

TEST_F(ConsoleUser, SidIsEmptyWhenNobodyIsLoggedOnAndTheHostHasNoName) {
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

class ChainWithAFailure : public ConsoleUser, public testing::WithParamInterface<ChainFault> {};

/// Whichever call fails, the identity is given back and nothing stays open; see ~ConsoleUser.
TEST_P(ChainWithAFailure, FindsWhatCanBeFoundAndLeavesNothingOpen) {
    world.faults.FailCall(GetParam().function, 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetActiveUserSid(), GetParam().sid);
    EXPECT_EQ(world.ledger.CountOpen(simulation::ResourceKind::Impersonation), 0u);
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
