// The optimisation report on a machine of which the test knows everything.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "reporters/report_popup_block_info.h"
#include "simulation/fakes/families.h"
#include "simulation/fakes/heap.h"
#include "simulation/simulated_machine.h"
#include "support/recorded_suite.h"

namespace optimisation_report_test {

using Texts = std::vector<std::string>;

inline constexpr char kAnnKey[] =
    "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
inline constexpr char kEvent[] = "event 992614518";
inline constexpr wchar_t kComponent[] =
    L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe";

/// Ann sits at the console, and the component has a version.
inline simulation::Machine DeskMachine() {
    simulation::Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"PC\\ann", ERROR_SUCCESS}};
    machine.logons.accounts = {{L"PC\\ann", L"S-1-5-21-1-2-3-1001"},
                               {L"NT AUTHORITY\\SYSTEM", L"S-1-5-18"}};
    machine.fileVersions[kComponent] = {/*file=*/{5, 6, 7, 8}, /*product=*/{1, 2, 3, 4}};
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
        world.journal.Clear();
        ReportPopUpBlockInfo().OnRecvReportInfo();
        return suite.timeline.Texts();
    }

    static std::string Exists(const std::string& key = kAnnKey) { return "exists " + key; }

    static std::string Read(const std::string& value, const std::string& key = kAnnKey) {
        return "read int32 " + key + ":" + value + " mask 0xF003F";
    }

    /// A run that finds the key and both switches.
    static Texts WholeRun(const std::string& key = kAnnKey) {
        return {Exists(key), Read("PopUpBlockingStatus", key), Read("PowerfulModeStatus", key),
                kEvent};
    }

    /// A field of the latest event.
    std::string LatestField(std::size_t index) const {
        const std::vector<test_support::Event> events = suite.events.All();
        return events.empty() ? "no event" : events.back().fields.at(index).second;
    }

    test_support::RecordedSuite suite;
    simulation::SimulatedMachine machine{
        GetModuleHandleW(nullptr),
        DeskMachine(),
        {simulation::InstallHandleFakes, simulation::InstallSessionFakes,
         simulation::InstallAccountFakes, simulation::InstallHeapFakes,
         simulation::InstallVersionInfoFakes}};
    simulation::World& world = machine.world();
};

}  // namespace optimisation_report_test
