#include "reporters/report_bios_info.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <ctime>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "simulation/import_redirection.h"
#include "standins/board_info/board_info_control.h"
#include "support/recorded_suite.h"
#include "support/registry_sandbox.h"

namespace {

using test_support::EventFields;
using Texts = std::vector<std::string>;

constexpr char kStamp[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime";
constexpr char kRead[] =
    "read int64 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime mask 0xF003F";
constexpr char kWrite[] =
    "write int64 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime mask 0xF003F = ";
constexpr char kNoHelper[] = "log 4 SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)";
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
    BiosReport() {
        timeOfCalls = &suite.timeline;
        nextTime = kNow;
        redirection.Redirect<decltype(::_time64)>("_time64", AdvancingTime);
    }

    /// What one run does.
    Texts Run() {
        suite.timeline.Clear();
        ReportBiosInfo().OnRecvReportInfo();
        return suite.timeline.Texts();
    }

    bool Sends() {
        Run();
        return suite.timeline.Count(kEvent) == 1;
    }

    test_support::RecordedSuite suite;
    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

TEST_F(BiosReport, ReadsTimeThenStampThenTextsAndStampsAfterSending) {
    EXPECT_EQ(Run(),
              (Texts{"time", kRead, "SmBiosHelper::GetInstance",
                     "SmBiosHelper::GetBoardProductName", "SmBiosHelper::GetOemProductName",
                     "SmBiosHelper::GetBIOSSysVersion", kEvent, kWrite + std::to_string(kNow)}));
}

TEST_F(BiosReport, CarriesTheThreeTextsInOrder) {
    BoardInfo_SetTexts(L"ZX-1", L"Desk 5", L"B1.07");
    Run();
    ASSERT_EQ(suite.events.All().size(), 1u);
    EXPECT_EQ(suite.events.All()[0].id, 992614500);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"Product", "ZX-1"}, {"String7", "Desk 5"}, {"Version", "B1.07"}}));
}

TEST_F(BiosReport, SendsEmptyTextsAsEmptyValues) {
    BoardInfo_SetTexts(L"", L"", L"");
    Run();
    ASSERT_EQ(suite.events.All().size(), 1u);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"Product", ""}, {"String7", ""}, {"Version", ""}}));
}

TEST_F(BiosReport, ConvertsItsTextsToTheAnsiCodePage) {
    if (GetACP() != 1252) {
        GTEST_SKIP() << "the ANSI code page is not the western one, but " << GetACP();
    }
    BoardInfo_SetTexts(L"caf\u00E9", L"\u20AC", L"\u4E2D!");
    Run();
    ASSERT_EQ(suite.events.All().size(), 1u);
    EXPECT_EQ(suite.events.All()[0].fields,
              (EventFields{{"Product", "caf\xE9"}, {"String7", "\x80"}, {"Version", "?!"}}));
}

TEST_F(BiosReport, GoesOutWhenThereIsNoStampAndCreatesIt) {
    EXPECT_TRUE(Sends());
    EXPECT_EQ(suite.registry.Value(kStamp), kNow);
}

TEST_F(BiosReport, GoesOutWhenTheStampIsExactly259200SecondsOld) {
    suite.registry.SetValue(kStamp, kNow - kMinSpacing);
    EXPECT_TRUE(Sends());
    EXPECT_EQ(suite.registry.Value(kStamp), kNow);
}

TEST_F(BiosReport, DoesNothingAtAllOneSecondBefore) {
    suite.registry.SetValue(kStamp, kNow - kMinSpacing + 1);
    EXPECT_EQ(Run(), (Texts{"time", kRead}));
    EXPECT_EQ(suite.registry.Value(kStamp), kNow - kMinSpacing + 1);
}

TEST_F(BiosReport, WaitsUntil72HoursAfterAStampInTheFuture) {
    const std::int64_t future = kNow + 1'000'000;
    suite.registry.SetValue(kStamp, future);
    EXPECT_EQ(Run(), (Texts{"time", kRead}));
    nextTime = future + kMinSpacing - 1;
    EXPECT_FALSE(Sends());
    nextTime = future + kMinSpacing;
    EXPECT_TRUE(Sends());
}

TEST_F(BiosReport, ComparesBeyond32Bits) {
    const std::int64_t farFuture = kNow + (std::int64_t{1} << 33);
    suite.registry.SetValue(kStamp, farFuture);
    EXPECT_FALSE(Sends());
    suite.registry.SetValue(kStamp, kNow - (std::int64_t{1} << 33));
    EXPECT_TRUE(Sends());
}

TEST_F(BiosReport, TakesTheMostExtremeStampsForFutureAndPast) {
    suite.registry.SetValue(kStamp, std::numeric_limits<std::int64_t>::max());
    EXPECT_FALSE(Sends());
    suite.registry.SetValue(kStamp, std::numeric_limits<std::int64_t>::min());
    EXPECT_TRUE(Sends());
}

TEST_F(BiosReport, GoesOutWhenTheStampCannotBeRead) {
    suite.registry.SetValue(kStamp, kNow);
    suite.registry.FailReads(kStamp, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Sends());
}

TEST_F(BiosReport, SaysNothingWhenTheStampCannotBeWrittenAndGoesOutAgain) {
    suite.registry.FailWrites(kStamp, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Sends());
    EXPECT_TRUE(Sends());
    EXPECT_TRUE(suite.log.Lines().empty());
    EXPECT_EQ(suite.registry.Value(kStamp), std::nullopt);
}

TEST_F(BiosReport, LogsAMissingHelperAtEachCallAndLeavesTheStamp) {
    BoardInfo_SetAvailable(0);
    const std::int64_t old = kNow - 10 * kMinSpacing;
    suite.registry.SetValue(kStamp, old);
    const Texts expected{"time", kRead, "SmBiosHelper::GetInstance", kNoHelper};
    EXPECT_EQ(Run(), expected);
    EXPECT_EQ(Run(), expected);
    EXPECT_EQ(suite.registry.Value(kStamp), old);
    BoardInfo_SetAvailable(1);
    EXPECT_TRUE(Sends());
}

TEST_F(BiosReport, TouchesNoValueButItsOwn) {
    constexpr char kOther[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
    suite.registry.SetValue(kOther, 4);
    EXPECT_TRUE(Sends());
    EXPECT_EQ(suite.registry.Value(kOther), 4);
}

TEST_F(BiosReport, SpacesReportsBy72HoursOver12HourlyCalls) {
    std::vector<int> hoursOfReports;
    for (int hours = 0; hours <= 168; hours += 12) {
        nextTime = kNow + std::int64_t{hours} * 3600;
        if (Sends()) {
            hoursOfReports.push_back(hours);
        }
    }
    EXPECT_EQ(hoursOfReports, (std::vector<int>{0, 72, 144}));
}

// --- The real registry ---

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
