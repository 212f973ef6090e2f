// A machine with several logon sessions, for the functions that look for a user.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "simulation/fakes/accounts.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/sessions.h"
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

/// Calls what stood in the import table before and reports its success as `kResult`.
template <class Function, BOOL kResult>
struct SuccessAs;
template <BOOL kResult, class... Arguments>
struct SuccessAs<BOOL WINAPI(Arguments...), kResult> {
    static BOOL WINAPI Call(Arguments... arguments) {
        return original(arguments...) == TRUE ? kResult : FALSE;
    }
    static inline BOOL(WINAPI* original)(Arguments...) = nullptr;
};

inline bool IsZero(const void* bytes, std::size_t size) {
    const auto* const begin = static_cast<const BYTE*>(bytes);
    return std::all_of(begin, begin + size, [](BYTE byte) { return byte == 0; });
}

}  // namespace console_user_test
