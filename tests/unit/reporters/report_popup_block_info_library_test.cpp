// How the optimisation report uses the suite's libraries and the real registry.
#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_kit.h"
#include "platform/xeevent.h"
#include "report/report_event.h"
#include "support/registry_sandbox.h"
#include "unit/import_override.h"
#include "unit/reporters/optimisation_report_fixture.h"

namespace {

using optimisation_report_test::DeskMachine;
using optimisation_report_test::kAnnKey;
using optimisation_report_test::Texts;
using unit_tests::ImportOverride;

class OptimisationReportCalls : public optimisation_report_test::OnDeskMachine {};

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

using Assign = XeEvent&(XeEvent*, const XeEvent*);
std::vector<std::pair<XeEvent*, const XeEvent*>> assignments;

XeEvent& RecordedAssign(XeEvent* target, const XeEvent* source) {
    assignments.emplace_back(target, source);
    return ImportOverride<Assign>::Next()(target, source);
}

TEST_F(OptimisationReportCalls, AssignsTheEventToItselfAfterEachField) {
    const ImportOverride<Assign> recorded(kAssignName, RecordedAssign);
    SetSwitches(1, 0);
    // The other reports leave it at putting the fields.
    SendEvent(1, {{"k", "v"}});
    EXPECT_EQ(assignments.size(), 0u);
    Run();
    ASSERT_EQ(assignments.size(), 3u);
    for (const auto& [target, source] : assignments) {
        EXPECT_EQ(target, source);
        EXPECT_EQ(target, assignments[0].first);
    }
    EXPECT_EQ(suite.events.All().back().fields.size(), 3u);
}

std::vector<std::int32_t> valuesBeforeRead;

bool SucceedWithoutValue(HKEY, const std::wstring&, const std::wstring&, std::int32_t& value,
                         std::uint32_t) {
    valuesBeforeRead.push_back(value);
    return true;
}

TEST_F(OptimisationReportCalls, BeginsEachReadWithMinusOneWhichIsOff) {
    const ImportOverride<bool(HKEY, const std::wstring&, const std::wstring&, std::int32_t&,
                              std::uint32_t)>
        handMade(kGetInt32Name, SucceedWithoutValue);
    suite.registry.AddKey(kAnnKey);
    Run();
    EXPECT_EQ(valuesBeforeRead, (std::vector<std::int32_t>{-1, -1}));
    EXPECT_EQ(LatestField(1), "0");
}

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

}  // namespace
