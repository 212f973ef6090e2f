#include "util/console_user.h"

#include <gtest/gtest.h>
#include <windows.h>
// windows.h has to come first.
#include <sddl.h>

#include <string>

#include "unit/util/dirty_memory.h"
#include "unit/util/office_machine.h"

namespace {

using namespace console_user_test;

class UserSid : public OnOfficeMachine {};

TEST_F(UserSid, OfAnAccountIsItsText) { EXPECT_EQ(GetUserSid(L"PC\\bob"), kBobSid); }

TEST_F(UserSid, IsLookedUpOnTheLocalSystemWithBuffersOf260) {
    GetUserSid(L"PC\\bob");
    EXPECT_EQ(world.journal.Names(),
              (Names{"LookupAccountNameW", "ConvertSidToStringSidW", "LocalFree"}));
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "system"), "null");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "account"), "PC\\bob");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "sidSize"), "260");
    EXPECT_EQ(Argument("LookupAccountNameW", 0, "domainSize"), "260");
}

TEST_F(UserSid, IsEmptyForAnUnknownAccount) {
    EXPECT_EQ(GetUserSid(L"PC\\nobody"), L"");
    EXPECT_EQ(world.journal.Names(), Names{"LookupAccountNameW"});
}

TEST_F(UserSid, IsEmptyWhenTheLookupFails) {
    world.faults.FailCall("LookupAccountNameW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(world.journal.Count("ConvertSidToStringSidW"), 0u);
}

TEST_F(UserSid, IsEmptyWhenTheBuffersAreTooSmall) {
    world.faults.FailCall("LookupAccountNameW", 1, 0, FaultVariant::ShortSize);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
}

TEST_F(UserSid, IsEmptyWhenItHasNoText) {
    world.faults.FailCall("ConvertSidToStringSidW", 1, ERROR_INVALID_SID);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(world.journal.Count("LocalFree"), 0u);
}

TEST_F(UserSid, IsEmptyWhenMemoryRunsOut) {
    const simulation::MallocFailure memory(260);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_EQ(memory.Count(), 1u);
    EXPECT_TRUE(world.journal.Names().empty());
}

TEST_F(UserSid, IsEmptyWhenTheConversionAnswersNeitherTrueNorFalse) {
    using Stub = SuccessAs<decltype(::ConvertSidToStringSidW), 2>;
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

TEST_F(UserSid, IsThatOfALookupWithAnotherResultThanTrue) {
    using Stub = SuccessAs<decltype(::LookupAccountNameW), 2>;
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    Stub::original =
        redirection.Redirect<decltype(::LookupAccountNameW)>("LookupAccountNameW", &Stub::Call);
    EXPECT_EQ(GetUserSid(L"PC\\bob"), kBobSid);
}

// --- The buffers ---

bool buffersWereZero = false;

BOOL WINAPI LookAtBuffers(const wchar_t*, const wchar_t*, void* sid, DWORD* sidSize,
                          wchar_t* domain, DWORD* domainSize, SID_NAME_USE*) {
    buffersWereZero = IsZero(sid, *sidSize) && IsZero(domain, *domainSize * sizeof(wchar_t));
    *sidSize = 0;
    *domainSize = 0;
    return FALSE;
}

TEST(UserSidBuffers, AreZeroBeforeTheLookup) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    redirection.Redirect<decltype(::LookupAccountNameW)>("LookupAccountNameW", &LookAtBuffers);
    buffersWereZero = false;
    const DirtyHeap heap;
    DirtyTheStack();
    EXPECT_EQ(GetUserSid(L"PC\\bob"), L"");
    EXPECT_TRUE(buffersWereZero);
}

}  // namespace
