#include "simulation/simulated_machine.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "simulation/fake_call.h"

namespace simulation {
namespace {

decltype(::GetCurrentProcessId)* realGetCurrentProcessId = nullptr;

/// A fake of the simplest kind; the error number of a fault is the result.
DWORD WINAPI FakeGetCurrentProcessId() {
    FakeCall call("GetCurrentProcessId");
    call.Argument("text", L"\u00E4");
    call.Argument("nothing", static_cast<const wchar_t*>(nullptr));
    call.Argument("guid", GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    call.Argument("kind", ResourceKind::Printer);
    if (call.PlannedFault()) {
        return call.Fails<DWORD>(0);
    }
    return call.Returns<DWORD>(4711);
}

DWORD WINAPI PassingFake() {
    FakeCall call("GetCurrentProcessId");
    SetLastError(1);  // As anything may that a fake does before.
    return call.PassTo(realGetCurrentProcessId);
}

void InstallPassingFake(ImportRedirection& redirection) {
    realGetCurrentProcessId =
        redirection.Redirect<decltype(::GetCurrentProcessId)>("GetCurrentProcessId", PassingFake);
}

void InstallTestFake(ImportRedirection& redirection) {
    realGetCurrentProcessId = redirection.RedirectIfImported<decltype(::GetCurrentProcessId)>(
        "GetCurrentProcessId", FakeGetCurrentProcessId);
}

HMODULE OwnModule() { return GetModuleHandleW(nullptr); }

TEST(SimulatedMachine, IsInForceWhileItLivesAndAllowsNoOther) {
    EXPECT_EQ(CurrentWorld(), nullptr);
    {
        SimulatedMachine machine(OwnModule(), Machine(), {InstallTestFake});
        EXPECT_THROW(SimulatedMachine(OwnModule(), Machine(), {}), std::logic_error);
        EXPECT_EQ(CurrentWorld(), &machine.world());
        EXPECT_EQ(GetCurrentProcessId(), 4711u);
    }
    EXPECT_EQ(CurrentWorld(), nullptr);
    EXPECT_EQ(GetCurrentProcessId(), realGetCurrentProcessId());
}

TEST(SimulatedMachine, LeavesNothingBehindWhenAFamilyFails) {
    const FakeFamily broken = [](ImportRedirection& redirection) {
        redirection.Redirect("NoSuchFunctionW", nullptr);
    };
    EXPECT_THROW(SimulatedMachine(OwnModule(), Machine(), {InstallTestFake, broken}),
                 std::invalid_argument);
    EXPECT_EQ(CurrentWorld(), nullptr);
    EXPECT_NE(GetCurrentProcessId(), 4711u);
}

TEST(FakeCall, JournalsArgumentsResultAndError) {
    SimulatedMachine machine(OwnModule(), Machine(), {InstallTestFake});
    SetLastError(0xDEAD);
    GetCurrentProcessId();
    EXPECT_EQ(GetLastError(), 0xDEADu) << "a call that succeeds changed the last error";
    machine.world().faults.FailCall("GetCurrentProcessId", 1, 5);
    GetCurrentProcessId();
    EXPECT_EQ(GetLastError(), 5u);
    const auto calls = machine.world().journal.Entries();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0]["text"], "\xC3\xA4");
    EXPECT_EQ(calls[0]["nothing"], "null");
    EXPECT_EQ(calls[0]["guid"], "{00000001-0002-0003-0405-060708090A0B}");
    EXPECT_EQ(calls[0]["kind"], "2");
    EXPECT_EQ(calls[0].result, "4711");
    EXPECT_EQ(calls[0].error, 0u);
    EXPECT_EQ(calls[1].result, "0");
    EXPECT_EQ(calls[1].error, 5u);
}

TEST(FakeCall, PassesTheCallersLastErrorOnToTheSystem) {
    const DWORD processId = GetCurrentProcessId();
    SimulatedMachine machine(OwnModule(), Machine(), {InstallPassingFake});
    SetLastError(0xDEAD);
    EXPECT_EQ(GetCurrentProcessId(), processId);
    EXPECT_EQ(GetLastError(), 0xDEADu);
    EXPECT_EQ(machine.world().journal.Entries()[0].result, std::to_string(processId));
}

}  // namespace
}  // namespace simulation
