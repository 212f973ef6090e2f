#include "reporters/report_bios_info.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "standins/board_info/board_info_control.h"
#include "support/recorded_suite.h"
#include "support/registry_sandbox.h"
#include "unit/import_override.h"

namespace {

using test_support::EventFields;
using Texts = std::vector<std::string>;

constexpr char kStamp[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime";
constexpr char kRead[] =
    "read int64 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime mask 0xF003F";
constexpr char kWrite[] =
    "write int64 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime mask 0xF003F = ";
constexpr char kEvent[] = "event 992614500";

constexpr std::int64_t kNow = 1'800'000'000;
constexpr std::int64_t kMinSpacing = 259200;

test_support::Timeline* timeOfCalls = nullptr;
std::int64_t nextTime = 0;

/// Each look at the clock is a thousand seconds after the one before.
__time64_t __cdecl AdvancingTime(__time64_t* seconds) {
    timeOfCalls->Note("time");
    const __time64_t now = nextTime;
    nextTime += 1000;
    if (seconds != nullptr) {
        *seconds = now;
    }
    return now;
}

static_assert(std::is_empty_v<ReportBiosInfo>);

class BiosReport : public testing::Test {
protected:
    BiosReport() { timeOfCalls = &suite.timeline; }

    /// What one run does.
    Texts Run() {
        nextTime = kNow;
        suite.timeline.Clear();
        ReportBiosInfo().OnRecvReportInfo();
        return suite.timeline.Texts();
    }

    bool Sends() {
        Run();
        return suite.timeline.Count(kEvent) == 1;
    }

    test_support::RecordedSuite suite;
    const unit_tests::ImportOverride<decltype(::_time64)> clock{"_time64", AdvancingTime};
};

TEST_F(BiosReport, ReadsTimeThenStampThenTextsAndStampsAfterSending) {
    EXPECT_EQ(Run(),
              (Texts{"time", kRead, "SmBiosHelper::GetInstance",
                     "SmBiosHelper::GetBoardProductName", "SmBiosHelper::GetOemProductName",
                     "SmBiosHelper::GetBIOSSysVersion", kEvent, kWrite + std::to_string(kNow)}));
}

TEST_F(BiosReport, CarriesTheThreeTextsInOrderAndInTheAnsiCodePage) {
    BoardInfo_SetTexts(L"ZX-1", L"", L"caf\u00E9");
    Run();
    ASSERT_EQ(suite.events.All().size(), 1u);
    EXPECT_EQ(suite.events.All()[0].id, 992614500);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"Product", "ZX-1"},
                           {"String7", ""},
                           {"Version", GetACP() == CP_UTF8 ? "caf\u00E9" : "caf\xE9"}}));
}

TEST_F(BiosReport, GoesOutWhenTheStampIsAtLeast259200SecondsOld) {
    using Limits = std::numeric_limits<std::int64_t>;
    for (const auto& [stamp, isSent] :
         {std::pair(kNow - kMinSpacing, true), std::pair(kNow - kMinSpacing + 1, false),
          std::pair(kNow, false), std::pair(kNow + 1'000'000, false),
          // Beyond 32 bits.
          std::pair(kNow + (std::int64_t{1} << 33), false),
          std::pair(kNow - (std::int64_t{1} << 33), true), std::pair(Limits::max(), false),
          std::pair(Limits::min(), true)}) {
        suite.registry.SetValue(kStamp, stamp);
        EXPECT_EQ(Sends(), isSent) << stamp;
        EXPECT_EQ(suite.registry.Value(kStamp), isSent ? kNow : stamp);
    }
    EXPECT_EQ(Run(), (Texts{"time", kRead}));
}

TEST_F(BiosReport, GoesOutWhenTheStampCanBeNeitherReadNorWritten) {
    suite.registry.SetValue(kStamp, kNow);
    suite.registry.FailReads(kStamp, ERROR_ACCESS_DENIED);
    suite.registry.FailWrites(kStamp, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Sends());
    EXPECT_TRUE(Sends());
    EXPECT_TRUE(suite.log.Lines().empty());
}

TEST_F(BiosReport, LogsAMissingHelperAtEachCallAndLeavesTheStamp) {
    BoardInfo_SetAvailable(0);
    suite.registry.SetValue(kStamp, 17);
    const Texts expected{"time", kRead, "SmBiosHelper::GetInstance",
                         "log 4 SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)"};
    EXPECT_EQ(Run(), expected);
    EXPECT_EQ(Run(), expected);
    EXPECT_EQ(suite.registry.Value(kStamp), 17);
}

TEST(BiosReportInTheRegistry, ReadsBackWhatItWroteAsA64BitNumber) {
    const test_support::RegistrySandbox machineKeys(HKEY_LOCAL_MACHINE);
    test_support::Timeline timeline;
    const test_support::RecordedEvents events(timeline);

    const std::int64_t before = std::time(nullptr);
    ReportBiosInfo().OnRecvReportInfo();
    const std::int64_t after = std::time(nullptr);
    ASSERT_EQ(events.WithId(992614500).size(), 1u);

    std::int64_t stamp = 0;
    DWORD size = sizeof(stamp);
    ASSERT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orbisuite\\DataReportTime",
                           L"BiosReportTime", RRF_RT_QWORD, nullptr, &stamp, &size),
              ERROR_SUCCESS);
    EXPECT_GE(stamp, before);
    EXPECT_LE(stamp, after);

    ReportBiosInfo().OnRecvReportInfo();
    EXPECT_EQ(events.WithId(992614500).size(), 1u);
}

}  // namespace
