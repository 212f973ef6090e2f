#include "reporters/report_popup_block_info.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "support/grouping_locale.h"
#include "unit/reporters/optimisation_report_fixture.h"

namespace {

using namespace optimisation_report_test;
using test_support::EventFields;

class OptimisationReport : public OnDeskMachine {};

// --- The run ---

TEST_F(OptimisationReport, AsksForTheKeyThenBothSwitchesThenTheVersionThenSends) {
    SetSwitches(0, 0);
    EXPECT_EQ(Run(), WholeRun());
    // The user is looked for once, not for each use of the key.
    EXPECT_EQ(world.journal.Count("WTSGetActiveConsoleSessionId"), 1u);
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

TEST_F(OptimisationReport, EndsSilentlyWithoutTheKey) { EXPECT_EQ(Run(), Texts{Exists()}); }

TEST_F(OptimisationReport, LogsAnUnreadableBlockingSwitchAndDoesNotReadTheOther) {
    SetSwitches(1, 1);
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Run(), (Texts{Exists(), Read("PopUpBlockingStatus"),
                            "log 4 Get register blocking switch fail: 5("
                            "ReportPopUpBlockInfo::OnRecvReportInfo)"}));
}

TEST_F(OptimisationReport, LogsAMissingPowerSwitchAndSendsNothingAlthoughTheOtherWasRead) {
    suite.registry.SetValue(std::string(kAnnKey) + ":PopUpBlockingStatus", 1);
    EXPECT_EQ(Run(), (Texts{Exists(), Read("PopUpBlockingStatus"), Read("PowerfulModeStatus"),
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

decltype(::free)* realFree = nullptr;

void __cdecl ForgetfulFree(void* block) {
    // The redirection itself gives memory back before the original is known.
    if (realFree != nullptr) {
        realFree(block);
    }
    SetLastError(ERROR_INVALID_FUNCTION);
}

TEST_F(OptimisationReport, LogsTheErrorNumberThatTheReadLeftAndNotThatOfMemoryGivenBack) {
    SetSwitches(0, 0);
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    realFree = redirection.Redirect<decltype(::free)>("free", ForgetfulFree);
    suite.registry.FailReads(std::string(kAnnKey) + ":PowerfulModeStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(LastOf(Run()),
              "log 4 Get register power switch fail: 5(ReportPopUpBlockInfo::OnRecvReportInfo)");
    suite.registry.FailReads(std::string(kAnnKey) + ":PopUpBlockingStatus", ERROR_ACCESS_DENIED);
    EXPECT_EQ(LastOf(Run()),
              "log 4 Get register blocking switch fail: 5(ReportPopUpBlockInfo::OnRecvReportInfo)");
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
    constexpr DWORD kSize = 7919;  // A size that nothing else asks for.
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
    EXPECT_EQ(Run(), Texts{Exists(kSystemKey)});
    SetSwitches(1, 1, kSystemKey);
    EXPECT_EQ(Run(), WholeRun(kSystemKey));
}

TEST_F(OptimisationReport, DescribesTheFirstActiveSessionsUserWhenTheConsolesHasNoSid) {
    world.Change([](simulation::Machine& changed) {
        changed.logons.sessions = {{1, WTSConnected, L"PC\\ann", ERROR_SUCCESS},
                                   {7, WTSActive, L"PC\\bob", ERROR_SUCCESS}};
        changed.logons.accounts = {{L"PC\\bob", L"S-1-5-21-1-2-3-1002"}};
    });
    SetSwitches(1, 1);
    EXPECT_EQ(Run(), Texts{Exists(kBobKey)});
    SetSwitches(1, 1, kBobKey);
    EXPECT_EQ(Run(), WholeRun(kBobKey));
}

TEST_F(OptimisationReport, AsksForTheBareSuffixWhenThereIsNoSid) {
    world.faults.FailEveryCall("LookupAccountNameW", ERROR_NONE_MAPPED);
    EXPECT_EQ(Run(), Texts{Exists(kNoSidKey)});
    SetSwitches(0, 0, kNoSidKey);
    Run();
    EXPECT_EQ(suite.timeline.Count(kEvent), 1u);
}

}  // namespace
