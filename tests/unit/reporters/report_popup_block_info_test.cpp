#include "reporters/report_popup_block_info.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/file_kit.h"
#include "platform/xeevent.h"
#include "simulation/fakes/accounts.h"
#include "simulation/fakes/handles.h"
#include "simulation/fakes/heap.h"
#include "simulation/fakes/sessions.h"
#include "simulation/simulated_machine.h"
#include "support/grouping_locale.h"
#include "support/recorded_suite.h"
#include "support/registry_sandbox.h"
#include "unit/reporters/version_calls.h"

namespace {

using test_support::EventFields;
using Texts = std::vector<std::string>;

constexpr char kAnnKey[] = "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kSystemKey[] = "HKU\\S-1-5-18\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kNoSidKey[] = "HKU\\\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
constexpr char kEvent[] = "event 992614518";

/// Ann sits at the console.
simulation::Machine DeskMachine() {
    simulation::Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"PC\\ann", ERROR_SUCCESS}};
    machine.logons.accounts = {{L"PC\\ann", L"S-1-5-21-1-2-3-1001"},
                               {L"NT AUTHORITY\\SYSTEM", L"S-1-5-18"}};
    return machine;
}

class OptimisationReport : public testing::Test {
protected:
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

    static std::string Read(const std::string& value, const std::string& key = kAnnKey) {
        return "read int32 " + key + ":" + value + " mask 0xF003F";
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

// --- The run ---

TEST_F(OptimisationReport, AsksForTheKeyThenBothSwitchesThenTheVersionThenSends) {
    SetSwitches(0, 0);
    EXPECT_EQ(Run(), (Texts{std::string("exists ") + kAnnKey, Read("PopUpBlockingStatus"),
                            Read("PowerfulModeStatus"), "GetFileVersionInfoSizeW",
                            "GetFileVersionInfoW", "VerQueryValueW", kEvent}));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(OptimisationReport, CarriesModeStatusAndProductVersionInOrder) {
    SetSwitches(0, 1);
    Run();
    ASSERT_EQ(suite.events.All().size(), 1u);
    EXPECT_EQ(suite.events.All()[0].id, 992614518);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"mode", "OPEN_MODE"}, {"status", "1"}, {"version", "1.2.3.4"}}));
    EXPECT_TRUE(suite.log.Lines().empty());
}

TEST_F(OptimisationReport, IsOnWhenEitherSwitchIsExactlyOne) {
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(StatusOf(0, 0), "0");
    EXPECT_EQ(StatusOf(1, 0), "1");
    EXPECT_EQ(StatusOf(0, 1), "1");
    EXPECT_EQ(StatusOf(1, 1), "1");
    EXPECT_EQ(StatusOf(2, 0), "0");
    EXPECT_EQ(StatusOf(0, 2), "0");
    EXPECT_EQ(StatusOf(2, 1), "1");
    EXPECT_EQ(StatusOf(-1, -1), "0");
    EXPECT_EQ(StatusOf(kMax, 256), "0");
}

TEST_F(OptimisationReport, EndsSilentlyWithoutTheKey) {
    EXPECT_EQ(Run(), Texts{std::string("exists ") + kAnnKey});
}

TEST_F(OptimisationReport, LogsAnUnreadableBlockingSwitchAndDoesNotReadTheOther) {
    SetSwitches(1, 1);
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Run(), (Texts{std::string("exists ") + kAnnKey, Read("PopUpBlockingStatus"),
                            "log 4 Get register blocking switch fail: 5("
                            "ReportPopUpBlockInfo::OnRecvReportInfo)"}));
}

TEST_F(OptimisationReport, LogsAMissingPowerSwitchAndSendsNothingAlthoughTheOtherWasRead) {
    suite.registry.SetValue(std::string(kAnnKey) + ":PopUpBlockingStatus", 1);
    EXPECT_EQ(Run(), (Texts{std::string("exists ") + kAnnKey, Read("PopUpBlockingStatus"),
                            Read("PowerfulModeStatus"),
                            "log 4 Get register power switch fail: 2("
                            "ReportPopUpBlockInfo::OnRecvReportInfo)"}));
}

TEST_F(OptimisationReport, WritesErrorNumbersAsPlainUnsignedDecimals) {
    const test_support::GroupingLocale grouping;
    SetSwitches(0, 0);
    suite.registry.FailReads(std::string(kAnnKey) + ":PowerfulModeStatus", 0xFFFFFFF0);
    EXPECT_EQ(LastOf(Run()),
              "log 4 Get register power switch fail: 4294967280("
              "ReportPopUpBlockInfo::OnRecvReportInfo)");
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", 1234567);
    EXPECT_EQ(LastOf(Run()),
              "log 4 Get register blocking switch fail: 1234567("
              "ReportPopUpBlockInfo::OnRecvReportInfo)");
}

// --- The version ---

TEST_F(OptimisationReport, GoesOutWithAnEmptyVersionWhenNoneCanBeRead) {
    for (const char* function :
         {"GetFileVersionInfoSizeW", "GetFileVersionInfoW", "VerQueryValueW"}) {
        versionCalls.Fail(function);
        EXPECT_EQ(StatusOf(1, 0), "1");
        EXPECT_EQ(LatestField("version"), "");
    }
    EXPECT_EQ(suite.events.All().size(), 3u);
    EXPECT_TRUE(suite.log.Lines().empty());
}

TEST_F(OptimisationReport, GoesOutWithAnEmptyVersionWhenMemoryRunsOut) {
    constexpr DWORD kSize = 7919;
    versionCalls.StateSize(kSize);
    SetSwitches(0, 0);
    const simulation::MallocFailure memory(kSize);
    const Texts happenings = Run();
    ASSERT_GE(happenings.size(), 2u);
    EXPECT_EQ(happenings[happenings.size() - 2],
              "log 4 infoData null(ReportPopUpBlockInfo::GetAppVersion)");
    EXPECT_EQ(happenings.back(), kEvent);
    EXPECT_EQ(LatestField("version"), "");
}

// --- Whose key ---

TEST_F(OptimisationReport, DescribesTheHostsAccountWhenTheConsoleUserIsNotFound) {
    world.faults.FailEveryCall("WTSQueryUserToken", ERROR_PRIVILEGE_NOT_HELD);
    SetSwitches(1, 1);
    EXPECT_EQ(Run(), Texts{std::string("exists ") + kSystemKey});
    SetSwitches(1, 1, kSystemKey);
    EXPECT_EQ(Run(),
              (Texts{std::string("exists ") + kSystemKey, Read("PopUpBlockingStatus", kSystemKey),
                     Read("PowerfulModeStatus", kSystemKey), "GetFileVersionInfoSizeW",
                     "GetFileVersionInfoW", "VerQueryValueW", kEvent}));
}

TEST_F(OptimisationReport, AsksForTheBareSuffixWhenThereIsNoSid) {
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    EXPECT_EQ(Run(), Texts{std::string("exists ") + kNoSidKey});
    SetSwitches(0, 0, kNoSidKey);
    Run();
    EXPECT_EQ(suite.timeline.Count(kEvent), 1u);
}

// --- Calls of the suite's libraries ---

#if defined(_MSC_VER)
constexpr char kAssignName[] = "??4XeEvent@@QEAAAEAV0@AEBV0@@Z";
constexpr char kGetInt32Name[] =
    "?GetValue@Registry@QD@@SA_NPEAUHKEY__@@AEBV?$basic_string@_WU?$char_traits@_W@std@@V?$"
    "allocator@_W@2@@std@@1AEAHI@Z";
#else
constexpr char kAssignName[] = "_ZN7XeEventaSERKS_";
constexpr char kGetInt32Name[] =
    "_ZN2QD8Registry8GetValueEP6HKEY__RKNSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEESA_"
    "Rij";
#endif

std::vector<std::pair<XeEvent*, const XeEvent*>> assignments;
XeEvent& (*realAssign)(XeEvent*, const XeEvent*) = nullptr;

XeEvent& RecordedAssign(XeEvent* target, const XeEvent* source) {
    assignments.emplace_back(target, source);
    return realAssign(target, source);
}

TEST_F(OptimisationReport, AssignsTheEventToItselfAfterEachField) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    assignments.clear();
    realAssign =
        redirection.Redirect<XeEvent&(XeEvent*, const XeEvent*)>(kAssignName, RecordedAssign);
    SetSwitches(1, 0);
    Run();
    ASSERT_EQ(assignments.size(), 3u);
    for (const auto& [target, source] : assignments) {
        EXPECT_EQ(target, source);
        EXPECT_EQ(target, assignments[0].first);
    }
    EXPECT_EQ(suite.events.All().at(0).fields,
              (EventFields{{"mode", "OPEN_MODE"}, {"status", "1"}, {"version", "1.2.3.4"}}));
}

std::vector<std::int32_t> valuesBeforeRead;

bool SucceedWithoutValue(HKEY, const std::wstring&, const std::wstring&, std::int32_t& value,
                         std::uint32_t) {
    valuesBeforeRead.push_back(value);
    return true;
}

TEST_F(OptimisationReport, BeginsEachReadWithMinusOneWhichIsOff) {
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    valuesBeforeRead.clear();
    redirection.Redirect<bool(HKEY, const std::wstring&, const std::wstring&, std::int32_t&,
                              std::uint32_t)>(kGetInt32Name, SucceedWithoutValue);
    suite.registry.AddKey(kAnnKey);
    Run();
    EXPECT_EQ(valuesBeforeRead, (std::vector<std::int32_t>{-1, -1}));
    EXPECT_EQ(LatestField("status"), "0");
}

TEST(OptimisationReporter, HasNoDataAndAConstEntry) {
    static_assert(std::is_empty_v<ReportPopUpBlockInfo>);
    static_assert(std::is_invocable_v<decltype(&ReportPopUpBlockInfo::OnRecvReportInfo),
                                      const ReportPopUpBlockInfo*>);
}

// --- The real registry ---

class OptimisationReportInTheRegistry : public testing::Test {
protected:
    void Write(const wchar_t* value, DWORD type, const void* data, DWORD size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_USERS,
                                  L"S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost",
                                  value, type, data, size),
                  ERROR_SUCCESS);
    }

    const test_support::RegistrySandbox userKeys{HKEY_USERS};
    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    test_support::RecordedEvents events{timeline};
    simulation::SimulatedMachine machine{
        GetModuleHandleW(nullptr),
        DeskMachine(),
        {simulation::InstallHandleFakes, simulation::InstallSessionFakes,
         simulation::InstallAccountFakes}};
};

TEST_F(OptimisationReportInTheRegistry, FindsTheUsersSwitches) {
    const ReportPopUpBlockInfo reporter;
    reporter.OnRecvReportInfo();
    EXPECT_TRUE(timeline.Texts().empty());

    const DWORD off = 0;
    const DWORD on = 1;
    Write(L"PopUpBlockingStatus", REG_DWORD, &off, sizeof(off));
    reporter.OnRecvReportInfo();
    EXPECT_EQ(timeline.Texts(), Texts{"log 4 Get register power switch fail: 2("
                                      "ReportPopUpBlockInfo::OnRecvReportInfo)"});

    Write(L"PowerfulModeStatus", REG_DWORD, &on, sizeof(on));
    reporter.OnRecvReportInfo();
    ASSERT_EQ(events.All().size(), 1u);
    EXPECT_EQ(events.All()[0].fields.at(1), (std::pair<std::string, std::string>{"status", "1"}));
}

TEST_F(OptimisationReportInTheRegistry, DoesNotTakeATextForASwitch) {
    const DWORD on = 1;
    Write(L"PopUpBlockingStatus", REG_SZ, L"1", 4);
    Write(L"PowerfulModeStatus", REG_DWORD, &on, sizeof(on));
    ReportPopUpBlockInfo().OnRecvReportInfo();
    EXPECT_TRUE(events.All().empty());
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].level, 4);
}

}  // namespace
