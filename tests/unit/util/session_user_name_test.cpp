#include "util/console_user.h"

#include <gtest/gtest.h>
#include <windows.h>
// windows.h has to come first.
#define SECURITY_WIN32
#include <security.h>
#include <wtsapi32.h>

#include <string>

#include "unit/util/dirty_memory.h"
#include "unit/util/office_machine.h"

namespace {

using namespace console_user_test;

class SessionUserName : public OnOfficeMachine {};

TEST_F(SessionUserName, IsAskedForAsTheSessionsUser) {
    EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "RevertToSelf", "CloseHandle"}));
    EXPECT_EQ(Argument("WTSQueryUserToken", 0, "sessionId"), "7");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "format"), "2");
    EXPECT_EQ(Argument("GetUserNameExW", 0, "size"), "260");
}

TEST_F(SessionUserName, IsThatOfTheHostWithoutAToken) {
    world.faults.FailCall("WTSQueryUserToken", 1, ERROR_PRIVILEGE_NOT_HELD);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "GetUserNameExW"}));
}

TEST_F(SessionUserName, IsThatOfTheHostWhenTheTokenIsRefusedForImpersonation) {
    world.faults.FailCall("ImpersonateLoggedOnUser", 1, ERROR_BAD_IMPERSONATION_LEVEL);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "CloseHandle"}));
}

TEST_F(SessionUserName, IsEmptyWhenItCannotBeReadAndTheIdentityIsGivenBack) {
    world.faults.FailCall("GetUserNameExW", 1, ERROR_NONE_MAPPED);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "ImpersonateLoggedOnUser",
                                            "GetUserNameExW", "RevertToSelf", "CloseHandle"}));
}

TEST_F(SessionUserName, IsEmptyWhenTheBufferIsTooSmall) {
    world.faults.FailCall("GetUserNameExW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
}

TEST_F(SessionUserName, IsEmptyWhenNothingIsWritten) {
    world.faults.FailCall("GetUserNameExW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(GetSessionUserName(kRemote), L"");
}

TEST_F(SessionUserName, MayFillTheBuffer) {
    const std::wstring name = L"PC\\" + std::wstring(256, L'u');  // With its NUL: 260.
    world.Change([&](simulation::Machine& changed) { changed.logons.sessions[2].userName = name; });
    EXPECT_EQ(GetSessionUserName(kRemote), name);
}

TEST_F(SessionUserName, OfANullTokenIsThatOfTheHost) {
    world.faults.FailCall("WTSQueryUserToken", 1, 0, FaultVariant::NullResult);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Count("CloseHandle"), 0u);
}

TEST_F(SessionUserName, IsThatOfTheHostWhenTheQueryAnswersNeitherTrueNorFalse) {
    using Stub = SuccessAs<decltype(::WTSQueryUserToken), 2>;
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    Stub::original =
        redirection.Redirect<decltype(::WTSQueryUserToken)>("WTSQueryUserToken", &Stub::Call);
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "GetUserNameExW", "CloseHandle"}));
}

TEST_F(SessionUserName, IsReadWithoutRevertingWhenImpersonationAnswersNeitherTrueNorFalse) {
    using Stub = SuccessAs<decltype(::ImpersonateLoggedOnUser), 2>;
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

// --- The buffer ---

bool bufferWasZero = false;
std::wstring nameToWrite;

BOOLEAN SEC_ENTRY WriteName(EXTENDED_NAME_FORMAT, wchar_t* name, ULONG* size) {
    bufferWasZero = IsZero(name, *size * sizeof(wchar_t));
    nameToWrite.copy(name, nameToWrite.size());
    *size = static_cast<ULONG>(nameToWrite.size());
    return TRUE;
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
    DirtyTheStack();
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

}  // namespace
