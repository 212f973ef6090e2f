#include <windows.h>
// windows.h has to come first.
#include <sddl.h>
#include <wtsapi32.h>
#define SECURITY_WIN32
#include <gmock/gmock.h>
#include <security.h>

#include "simulation/fakes/accounts.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/sessions.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr DWORD kPoison = 0xDEAD;

Machine TwoUsers() {
    Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{0, WTSDisconnected, L"", ERROR_SUCCESS},
                               {1, WTSActive, L"DESK\\ann", ERROR_SUCCESS},
                               {2, WTSActive, L"DESK\\bob", ERROR_PRIVILEGE_NOT_HELD}};
    machine.logons.accounts[L"DESK\\ann"] = L"S-1-5-21-1-2-3-1001";
    return machine;
}

class SessionFakes : public ::testing::Test {
protected:
    SessionFakes() { SetLastError(kPoison); }

    std::wstring UserName(ULONG capacity = 260) {
        std::vector<wchar_t> name(capacity + 1, L'?');
        return GetUserNameExW(NameSamCompatible, name.data(), &capacity) != 0 ? name.data() : L"";
    }

    SimulatedMachine machine{GetModuleHandleW(nullptr),
                             TwoUsers(),
                             {InstallHandleFakes, InstallSessionFakes, InstallAccountFakes}};
    World& world = machine.world();
};

TEST_F(SessionFakes, AnswerTheConsoleSession) {
    EXPECT_EQ(WTSGetActiveConsoleSessionId(), 1u);
    world.faults.FailCall("WTSGetActiveConsoleSessionId", 1, 0);
    EXPECT_EQ(WTSGetActiveConsoleSessionId(), kNoConsoleSession);
}

TEST_F(SessionFakes, ListSessionsInOrder) {
    WTS_SESSION_INFOW* list = nullptr;
    DWORD count = 0;
    ASSERT_TRUE(WTSEnumerateSessionsW(WTS_CURRENT_SERVER_HANDLE, 0, 1, &list, &count));
    ASSERT_EQ(count, 3u);
    EXPECT_EQ(list[0].State, WTSDisconnected);
    EXPECT_EQ(list[2].SessionId, 2u);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::WtsMemory), 1u);
    WTSFreeMemory(list);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    const JournalEntry call = world.journal.Calls("WTSEnumerateSessionsW").at(0);
    EXPECT_EQ(call["server"], "null");
    EXPECT_EQ(call["version"], "1");
}

TEST_F(SessionFakes, RefuseAListOfAnotherVersion) {
    WTS_SESSION_INFOW* list = nullptr;
    DWORD count = 0;
    EXPECT_FALSE(WTSEnumerateSessionsW(WTS_CURRENT_SERVER_HANDLE, 0, 2, &list, &count));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST_F(SessionFakes, FailToListSessionsInThePlannedWay) {
    WTS_SESSION_INFOW* list = nullptr;
    DWORD count = 7;
    world.faults.FailCall("WTSEnumerateSessionsW", 1, 1722);
    EXPECT_FALSE(WTSEnumerateSessionsW(nullptr, 0, 1, &list, &count));
    EXPECT_EQ(GetLastError(), 1722u);
    EXPECT_EQ(count, 7u);
    world.faults.FailCall("WTSEnumerateSessionsW", 1, 0, FaultVariant::NullResult);
    EXPECT_TRUE(WTSEnumerateSessionsW(nullptr, 0, 1, &list, &count));
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
    world.faults.FailCall("WTSEnumerateSessionsW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(WTSEnumerateSessionsW(nullptr, 0, 1, &list, &count));
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(count, 0u);
    WTSFreeMemory(list);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(SessionFakes, NoticeAListThatIsFreedTwice) {
    WTS_SESSION_INFOW* list = nullptr;
    DWORD count = 0;
    WTSEnumerateSessionsW(nullptr, 0, 1, &list, &count);
    WTSFreeMemory(list);
    WTSFreeMemory(list);
    EXPECT_THAT(world.ledger.Errors(), ElementsAre(HasSubstr("WTS memory")));
}

TEST_F(SessionFakes, LetAThreadActAsTheUserUntilItReverts) {
    HANDLE token = nullptr;
    ASSERT_TRUE(WTSQueryUserToken(1, &token));
    EXPECT_EQ(UserName(), L"NT AUTHORITY\\SYSTEM");
    ASSERT_TRUE(ImpersonateLoggedOnUser(token));
    EXPECT_EQ(UserName(), L"DESK\\ann");
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::Impersonation), 1u);
    EXPECT_TRUE(RevertToSelf());
    EXPECT_EQ(UserName(), L"NT AUTHORITY\\SYSTEM");
    EXPECT_TRUE(CloseHandle(token));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    EXPECT_EQ(GetLastError(), kPoison) << "calls that succeed leave the last error alone";
}

TEST_F(SessionFakes, RefuseTokensAsTheSystemDoes) {
    HANDLE token = nullptr;
    EXPECT_FALSE(WTSQueryUserToken(0, &token));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_TOKEN));
    EXPECT_FALSE(WTSQueryUserToken(2, &token));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PRIVILEGE_NOT_HELD));
    EXPECT_FALSE(WTSQueryUserToken(9, &token));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(SessionFakes, RefuseToImpersonateWithAClosedToken) {
    HANDLE token = nullptr;
    ASSERT_TRUE(WTSQueryUserToken(1, &token));
    CloseHandle(token);
    EXPECT_FALSE(ImpersonateLoggedOnUser(token));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST_F(SessionFakes, NoticeATokenThatIsClosedTwice) {
    HANDLE token = nullptr;
    ASSERT_TRUE(WTSQueryUserToken(1, &token));
    EXPECT_TRUE(CloseHandle(token));
    EXPECT_FALSE(CloseHandle(token));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_THAT(world.ledger.Errors(), ElementsAre(HasSubstr("released twice")));
}

TEST_F(SessionFakes, CloseRealHandlesForReal) {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    EXPECT_TRUE(CloseHandle(event));
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(event, &flags)) << "the event is still open";
}

TEST_F(SessionFakes, GiveNoNameWhenTheBufferIsTooSmall) {
    ULONG size = 8;
    wchar_t name[8] = L"?";
    EXPECT_FALSE(GetUserNameExW(NameSamCompatible, name, &size));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MORE_DATA));
    EXPECT_EQ(size, 20u);
    EXPECT_STREQ(name, L"?");
    world.faults.FailCall("GetUserNameExW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(GetUserNameExW(NameSamCompatible, name, &size));
    EXPECT_STREQ(name, L"");
}

TEST_F(SessionFakes, FindAccountsInAnyLetterCase) {
    BYTE sid[260] = {};
    wchar_t domain[260] = {};
    DWORD sidSize = 260;
    DWORD domainSize = 260;
    SID_NAME_USE use = SidTypeUnknown;
    ASSERT_TRUE(
        LookupAccountNameW(nullptr, L"desk\\ANN", sid, &sidSize, domain, &domainSize, &use));
    EXPECT_STREQ(domain, L"DESK");
    EXPECT_EQ(use, SidTypeUser);
    wchar_t* text = nullptr;
    ASSERT_EQ(ConvertSidToStringSidW(sid, &text), TRUE);
    EXPECT_STREQ(text, L"S-1-5-21-1-2-3-1001");
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::LocalMemory), 1u);
    EXPECT_EQ(LocalFree(text), nullptr);
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    EXPECT_EQ(world.journal.Calls("LookupAccountNameW").at(0)["account"], "desk\\ANN");
}

TEST_F(SessionFakes, KnowNoSidOfStrangers) {
    BYTE sid[260] = {};
    wchar_t domain[260] = {};
    DWORD sidSize = 260;
    DWORD domainSize = 260;
    SID_NAME_USE use = SidTypeUnknown;
    for (const wchar_t* account : {L"DESK\\bob", L"", L"DESK\\an"}) {
        EXPECT_FALSE(
            LookupAccountNameW(nullptr, account, sid, &sidSize, domain, &domainSize, &use));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NONE_MAPPED));
    }
    sidSize = 4;
    EXPECT_FALSE(
        LookupAccountNameW(nullptr, L"DESK\\ann", sid, &sidSize, domain, &domainSize, &use));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(sidSize, 28u);
}

}  // namespace
}  // namespace simulation
