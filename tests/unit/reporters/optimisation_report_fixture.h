// The optimisation report on a machine of which the test knows everything.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "reporters/report_popup_block_info.h"
#include "simulation/fakes/accounts.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/sessions.h"
#include "simulation/simulated_machine.h"
#include "support/recorded_suite.h"
#include "unit/reporters/version_calls.h"

namespace optimisation_report_test {

using Texts = std::vector<std::string>;

inline constexpr char kAnnKey[] =
    "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr char kBobKey[] =
    "HKU\\S-1-5-21-1-2-3-1002\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr char kSystemKey[] = "HKU\\S-1-5-18\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr char kNoSidKey[] = "HKU\\\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr char kEvent[] = "event 992614518";

/// Ann sits at the console.
inline simulation::Machine DeskMachine() {
    simulation::Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"PC\\ann", ERROR_SUCCESS}};
    machine.logons.accounts = {{L"PC\\ann", L"S-1-5-21-1-2-3-1001"},
                               {L"NT AUTHORITY\\SYSTEM", L"S-1-5-18"}};
    return machine;
}

class OnDeskMachine : public testing::Test {
protected:
    ~OnDeskMachine() override {
        EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
        EXPECT_TRUE(world.faults.Missed().empty());
    }

    void SetSwitches(std::int32_t popUpBlocking, std::int32_t powerfulMode,
                     const std::string& key = kAnnKey) {
        suite.registry.SetValue(key + ":PopUpBlockingStatus", popUpBlocking);
        suite.registry.SetValue(key + ":PowerfulModeStatus", powerfulMode);
    }

    Texts Run() {
        suite.timeline.Clear();
        reporter.OnRecvReportInfo();
        return suite.timeline.Texts();
    }

    static std::string LastOf(const Texts& texts) {
        return texts.empty() ? "nothing happened" : texts.back();
    }

    static std::string Exists(const std::string& key = kAnnKey) { return "exists " + key; }

    static std::string Read(const std::string& value, const std::string& key = kAnnKey) {
        return "read int32 " + key + ":" + value + " mask 0xF003F";
    }

    /// A run that finds the key and both switches.
    static Texts WholeRun(const std::string& key = kAnnKey) {
        return {Exists(key),
                Read("PopUpBlockingStatus", key),
                Read("PowerfulModeStatus", key),
                "GetFileVersionInfoSizeW",
                "GetFileVersionInfoW",
                "VerQueryValueW",
                kEvent};
    }

    /// A field of the latest event; the reason when there is none.
    std::string LatestField(const std::string& key) const {
        const std::vector<test_support::Event> events = suite.events.All();
        if (events.empty()) {
            return "no event";
        }
        for (const auto& [fieldKey, value] : events.back().fields) {
            if (fieldKey == key) {
                return value;
            }
        }
        return "no such field";
    }

    std::string StatusOf(std::int32_t popUpBlocking, std::int32_t powerfulMode) {
        SetSwitches(popUpBlocking, powerfulMode);
        Run();
        return LatestField("status");
    }

    const ReportPopUpBlockInfo reporter{};
    test_support::RecordedSuite suite;
    simulation::SimulatedMachine machine{
        GetModuleHandleW(nullptr),
        DeskMachine(),
        {simulation::InstallHandleFakes, simulation::InstallSessionFakes,
         simulation::InstallAccountFakes, simulation::InstallHeapFakes}};
    simulation::World& world = machine.world();
    VersionCalls versionCalls{suite.timeline, L"component_1_2_3_4.exe"};
};

}  // namespace optimisation_report_test
