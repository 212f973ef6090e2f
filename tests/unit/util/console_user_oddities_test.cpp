// Results that are neither TRUE nor FALSE, and the buffers that the system fills.
#include <windows.h>
#include <gtest/gtest.h>
#include <sddl.h>
#define SECURITY_WIN32
#include <security.h>
#include <wtsapi32.h>

#include <algorithm>
#include <string>

#include "unit/import_override.h"
#include "unit/util/dirty_memory.h"
#include "unit/util/office_machine.h"
#include "util/console_user.h"

namespace {

using namespace console_user_test;
using unit_tests::ImportOverride;

/// What the function does, but with its success reported as `kResult`.
template <class Function, BOOL kResult>
class SuccessAs;
template <BOOL kResult, class... Arguments>
class SuccessAs<BOOL WINAPI(Arguments...), kResult> {
public:
    explicit SuccessAs(const char* name) : handMade(name, &Call) {}

private:
    using Override = ImportOverride<BOOL WINAPI(Arguments...), SuccessAs>;
    static BOOL WINAPI Call(Arguments... arguments) {
        return Override::Next()(arguments...) == TRUE ? kResult : FALSE;
    }

    Override handMade;
};

class OddResult : public OnOfficeMachine {};

TEST_F(OddResult, OfTheTokenQueryCountsAsAFailure) {
    const SuccessAs<decltype(::WTSQueryUserToken), 2> odd("WTSQueryUserToken");
    EXPECT_EQ(GetSessionUserName(kRemote), L"NT AUTHORITY\\SYSTEM");
    EXPECT_EQ(world.journal.Names(), (Names{"WTSQueryUserToken", "GetUserNameExW", "CloseHandle"}));
}

TEST_F(OddResult, OfImpersonationIsNotReverted) {
    {
        const SuccessAs<decltype(::ImpersonateLoggedOnUser), 2> odd("ImpersonateLoggedOnUser");
        EXPECT_EQ(GetSessionUserName(kRemote), L"PC\\bob");
    }
    EXPECT_EQ(world.journal.Count("RevertToSelf"), 0u);
    RevertToSelf();  // What the system began in spite of its answer.
}

TEST_F(OddResult, OfTheLookupCountsAsASuccess) {
    const SuccessAs<decltype(::LookupAccountNameW), 2> odd("LookupAccountNameW");
    EXPECT_EQ(GetUserSid(L"PC\\bob"), kBobSid);
}

TEST_F(OddResult, OfTheConversionCountsAsAFailure) {
    {
        const SuccessAs<decltype(::ConvertSidToStringSidW), 2> odd("ConvertSidToStringSidW");
        EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    }
    EXPECT_EQ(world.journal.Count("LocalFree"), 0u);
    for (const simulation::OpenResource& leftBySystem : world.ledger.Open()) {
        LocalFree(leftBySystem.value);
    }
}

TEST_F(OddResult, OfTheSessionListCountsAsASuccess) {
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    const SuccessAs<decltype(::WTSEnumerateSessionsW), 2> odd("WTSEnumerateSessionsW");
    EXPECT_EQ(GetActiveUserSid(), kBobSid);
}

TEST_F(OddResult, OfAFailureWithASessionListFreesTheListUnread) {
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_NONE_MAPPED);
    const SuccessAs<decltype(::WTSEnumerateSessionsW), FALSE> odd("WTSEnumerateSessionsW");
    EXPECT_EQ(GetActiveUserSid(), L"");
    EXPECT_EQ(world.journal.Count("WTSFreeMemory"), 1u);
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

TEST(UserNameBuffer, IsZeroAndReadUpToItsFirstNulOrItsEnd) {
    const ImportOverride<decltype(::GetUserNameExW)> handMade("GetUserNameExW", &WriteName);
    for (const std::wstring& name :
         {std::wstring(), std::wstring(L"PC\\bob\0rest", 11), std::wstring(260, L'u')}) {
        nameToWrite = name;
        DirtyTheStack();
        EXPECT_EQ(GetSessionUserName(kRemote), name.substr(0, name.find(L'\0')));
        EXPECT_TRUE(bufferWasZero);
    }
}

BOOL WINAPI LookAtBuffers(const wchar_t*, const wchar_t*, void* sid, DWORD* sidSize,
                          wchar_t* domain, DWORD* domainSize, SID_NAME_USE*) {
    bufferWasZero = IsZero(sid, *sidSize) && IsZero(domain, *domainSize * sizeof(wchar_t));
    *sidSize = 0;
    *domainSize = 0;
    return FALSE;
}

TEST(UserSidBuffers, AreZeroBeforeTheLookup) {
    const ImportOverride<decltype(::LookupAccountNameW)> handMade("LookupAccountNameW",
                                                                  &LookAtBuffers);
    bufferWasZero = false;
    const DirtyHeap heap;
    DirtyTheStack();
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_TRUE(bufferWasZero);
}

}  // namespace
