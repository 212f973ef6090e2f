// A machine with several logon sessions, for the functions that look for a user.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulation/fakes/families.h"
#include "simulation/simulated_machine.h"

namespace console_user_test {

using simulation::FaultVariant;
using Names = std::vector<std::string>;

inline constexpr DWORD kConsole = 1;
inline constexpr DWORD kRemote = 7;
inline constexpr wchar_t kAnnSid[] = L"S-1-5-21-1-2-3-1001";
inline constexpr wchar_t kBobSid[] = L"S-1-5-21-1-2-3-1002";
inline constexpr wchar_t kCleoSid[] = L"S-1-5-21-1-2-3-1003";
inline constexpr wchar_t kHostSid[] = L"S-1-5-18";
inline constexpr wchar_t kBuiltInSid[] = L"S-1-5-32";

/// Ann sits at the console, Bob works remotely, Cleo's session is behind his.
inline simulation::Machine OfficeMachine() {
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

class OnOfficeMachine : public testing::Test {
protected:
    ~OnOfficeMachine() override {
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

}  // namespace console_user_test
