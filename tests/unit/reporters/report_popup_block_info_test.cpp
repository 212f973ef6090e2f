#include "reporters/report_popup_block_info.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <type_traits>

#include "simulation/fakes/heap.h"
#include "support/grouping_locale.h"
#include "unit/import_override.h"
#include "unit/reporters/optimisation_report_fixture.h"

namespace {

using namespace optimisation_report_test;
using test_support::EventFields;
using unit_tests::ImportOverride;

static_assert(std::is_empty_v<ReportPopUpBlockInfo>);
static_assert(std::is_invocable_v<decltype(&ReportPopUpBlockInfo::OnRecvReportInfo),
                                  const ReportPopUpBlockInfo*>);

class OptimisationReport : public OnDeskMachine {};

// --- The run ---

TEST_F(OptimisationReport, AsksForTheKeyThenBothSwitchesThenTheVersionThenSends) {
    SetSwitches(0, 1);
    suite.events.onEvent = [this](const test_support::Event&) {
        EXPECT_EQ(world.journal.Count("VerQueryValueW"), 1u);
    };
    EXPECT_EQ(Run(), WholeRun());
    // The user is looked for once, not for each use of the key.
    EXPECT_EQ(world.journal.Count("WTSGetActiveConsoleSessionId"), 1u);
    EXPECT_EQ(suite.events.All().at(0).id, 992614518);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"mode", "OPEN_MODE"}, {"status", "1"}, {"version", "1.2.3.4"}}));
}

struct Switches {
    std::int32_t popUpBlocking;
    std::int32_t powerfulMode;
    const char* status;
};

TEST_F(OptimisationReport, IsOnWhenEitherSwitchIsExactlyOne) {
    for (const auto& [popUpBlocking, powerfulMode, status] :
         {Switches{0, 0, "0"}, Switches{1, 0, "1"}, Switches{0, 1, "1"}, Switches{1, 1, "1"},
          Switches{2, 0, "0"}, Switches{0, 2, "0"}, Switches{2, 1, "1"}, Switches{-1, -1, "0"},
          Switches{std::numeric_limits<std::int32_t>::max(), 256, "0"}}) {
        SetSwitches(popUpBlocking, powerfulMode);
        Run();
        EXPECT_EQ(LatestField(1), status) << popUpBlocking << " " << powerfulMode;
    }
}

TEST_F(OptimisationReport, LogsAnUnreadableSwitchAndReadsNothingElse) {
    const test_support::GroupingLocale grouping;
    SetSwitches(1, 1);
    suite.registry.FailReads(std::string(kAnnKey) + ":PowerfulModeStatus", 0xFFFFFFF0);
    EXPECT_EQ(Run(), (Texts{Exists(), Read("PopUpBlockingStatus"), Read("PowerfulModeStatus"),
                            "log 4 Get register power switch fail: 4294967280("
                            "ReportPopUpBlockInfo::OnRecvReportInfo)"}));
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", 1234567);
    EXPECT_EQ(Run(), (Texts{Exists(), Read("PopUpBlockingStatus"),
                            "log 4 Get register blocking switch fail: 1234567("
                            "ReportPopUpBlockInfo::OnRecvReportInfo)"}));
    EXPECT_EQ(world.journal.Count("GetFileVersionInfoSizeW"), 0u);
}

using Free = void(void*);

void __cdecl ForgetfulFree(void* block) {
    // The redirection itself gives memory back before the original is known.
    if (ImportOverride<Free>::Next() != nullptr) {
        ImportOverride<Free>::Next()(block);
    }
    SetLastError(ERROR_INVALID_FUNCTION);
}

TEST_F(OptimisationReport, LogsTheErrorNumberThatTheReadLeftAndNotThatOfMemoryGivenBack) {
    SetSwitches(0, 0);
    const ImportOverride<Free> handMade("free", ForgetfulFree);
    suite.registry.FailReads(std::string(kAnnKey) + ":PowerfulModeStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Run().back(),
              "log 4 Get register power switch fail: 5(ReportPopUpBlockInfo::OnRecvReportInfo)");
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Run().back(),
              "log 4 Get register blocking switch fail: 5(ReportPopUpBlockInfo::OnRecvReportInfo)");
}

// --- Whose key ---

TEST_F(OptimisationReport, DescribesTheAccountThatIsFoundOrTheBareSuffix) {
    const std::string suffix = "\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
    const auto expectKey = [this](const std::string& key) {
        EXPECT_EQ(Run(), Texts{Exists(key)});
        SetSwitches(1, 1, key);
        EXPECT_EQ(Run(), WholeRun(key));
    };
    expectKey(kAnnKey);
    world.faults.FailEveryCall("WTSQueryUserToken", ERROR_PRIVILEGE_NOT_HELD);
    expectKey("HKU\\S-1-5-18" + suffix);
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    expectKey("HKU\\" + suffix);
}

// --- The version ---

class AppVersion : public OnDeskMachine {};

TEST_F(AppVersion, IsTheUngroupedProductVersionOfTheComponent) {
    const test_support::GroupingLocale grouping;
    world.Change([](simulation::Machine& changed) {
        changed.fileVersions[kComponent].product = {65535, 65534, 32768, 10000};
    });
    EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "65535.65534.32768.10000");
    EXPECT_EQ(world.journal.Names(),
              (Texts{"GetFileVersionInfoSizeW", "GetFileVersionInfoW", "VerQueryValueW"}));
    EXPECT_EQ(world.journal.Calls("GetFileVersionInfoSizeW").at(0)["handle"], "null");
    EXPECT_EQ(world.journal.Calls("GetFileVersionInfoW").at(0)["handle"], "0");
    EXPECT_EQ(world.journal.Calls("GetFileVersionInfoW").at(0)["size"],
              world.journal.Calls("GetFileVersionInfoSizeW").at(0).result);
    EXPECT_EQ(world.journal.Calls("VerQueryValueW").at(0)["subBlock"], "\\");
}

struct VersionFault {
    const char* function;
    simulation::FaultVariant variant;
    std::size_t calls;
};

TEST_F(AppVersion, IsEmptyWhenACallFailsOrFindsNoRootBlock) {
    using simulation::FaultVariant;
    for (const auto& [function, variant, calls] :
         {VersionFault{"GetFileVersionInfoSizeW", FaultVariant::Fail, 1},
          VersionFault{"GetFileVersionInfoW", FaultVariant::Fail, 2},
          VersionFault{"VerQueryValueW", FaultVariant::Fail, 3},
          VersionFault{"VerQueryValueW", FaultVariant::NullResult, 3},
          VersionFault{"VerQueryValueW", FaultVariant::SuccessWithNothing, 3},
          VersionFault{"VerQueryValueW", FaultVariant::ShortSize, 3}}) {
        world.journal.Clear();
        world.faults.FailCall(function, 1, sizeof(VS_FIXEDFILEINFO) - 1, variant);
        EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "") << function;
        EXPECT_EQ(world.journal.Names().size(), calls) << function;
        EXPECT_EQ(ReportPopUpBlockInfo::GetAppVersion(), "1.2.3.4");
    }
    EXPECT_TRUE(suite.timeline.Texts().empty());
}

TEST_F(AppVersion, IsEmptyAndLoggedWhenMemoryRunsOutAndTheReportGoesOut) {
    constexpr DWORD kSize = 7919;  // A size that nothing else asks for.
    world.faults.FailCall("GetFileVersionInfoSizeW", 1, kSize, simulation::FaultVariant::ShortSize);
    const simulation::MallocFailure memory(kSize);
    SetSwitches(0, 0);
    Run();
    EXPECT_EQ(memory.Count(), 1u);
    EXPECT_EQ(suite.timeline.Count("log 4 infoData null(ReportPopUpBlockInfo::GetAppVersion)"), 1u);
    EXPECT_EQ(suite.timeline.Count(kEvent), 1u);
    EXPECT_EQ(LatestField(2), "");
}

}  // namespace
