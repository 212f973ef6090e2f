// When a device list may be sent, and what sending it does in which order. What a day brings is in
// the tests of the built library.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstdint>
#include <string>
#include <utility>

#include "standins/consent_store/consent_store_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "unit/device_reporter/monitor_test.h"

namespace {

using namespace device_tests;

constexpr char kCountValue[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
constexpr char kNoDisplaysLine[] =
    "log 3 QueryDisplayConfig failed!(`anonymous-namespace'::GetDisplayInfo)";
constexpr char kNoPrintersLine[] = "log 3 printerInfoList is null(DeviceReporter::ParsePrinters)";
constexpr char kListEvent[] = "event 992614533";
/// Closing the monitor of a reporter that has no window shows as this.
constexpr char kClosedLine[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::StopMonitorDevices)";

/// How the count is written back.
std::string WriteCount(std::int32_t count) {
    return std::string("write int32 ") + kCountValue + " mask 0xF003F = " + std::to_string(count);
}

class ReportPolicy : public MonitorTest {
protected:
    Texts Report() {
        Timeline().Clear();
        reporter.DoReportDevices();
        return Timeline().Texts();
    }
};

// --- Once a day ---

TEST_F(ReportPolicy, LetsAListOutAfter24HoursOfTheSteadyClock) {
    for (const auto& [age, isSent] :
         {std::pair(kDay - 100, false), std::pair(kDay - 1, false), std::pair(kDay, true),
          std::pair(kDay + 100, true), std::pair(-10 * kDay, false)}) {
        MakeDue(0);
        reporter.lastReportTime = Now() - age;
        Report();
        EXPECT_EQ(Timeline().Count(kListLine), isSent ? 1u : 0u) << age;
    }
}

TEST_F(ReportPolicy, ToldThatNoListIsDueLeavesEverythingAlone) {
    for (const std::int32_t count : {0, 10}) {
        MakeDue(count);
        const std::int64_t before = reporter.lastReportTime += 100;
        EXPECT_EQ(Report(), Texts{});
        EXPECT_EQ(ConsentStore_AskCount(), 0u);
        EXPECT_EQ(reporter.lastReportTime, before);
        EXPECT_EQ(reporter.reportCount, count);
        EXPECT_EQ(reporter.devices.size(), 1u);
    }
}

TEST_F(ReportPolicy, CountsTheDayFromTheMomentBetweenSendingAndWritingTheCount) {
    MakeDue(0);
    // The line that is written when there is no printer comes while the list is being built.
    suite.log.onLine = [this](const test_support::LogLine& line) {
        if (line.text.find(L"printerInfoList is null") == 0) {
            World().clock.Advance(std::chrono::seconds(7));
        }
    };
    suite.events.onEvent = [this](const test_support::Event&) {
        World().clock.Advance(std::chrono::seconds(11));
    };
    FileKit_SetInterceptor(
        [](void* context, int, HKEY, const wchar_t*, const wchar_t*, unsigned, long long*,
           unsigned long*) -> int {
            static_cast<simulation::World*>(context)->clock.Advance(std::chrono::seconds(13));
            return FILE_KIT_SUCCEED;
        },
        &World());
    const std::int64_t begin = Now();
    Report();
    EXPECT_EQ(reporter.lastReportTime, begin + 18'000'000'000);
    EXPECT_EQ(Now(), begin + 31'000'000'000);
}

// --- With consent ---

TEST_F(ReportPolicy, WantsAConsentOfExactlyOneAndLogsASecondAnswerOtherwise) {
    for (const auto& [first, second] :
         {std::pair("0", "0"), std::pair("", ""), std::pair("11", "11"), std::pair(" 1", " 1"),
          std::pair("1 ", "1 "), std::pair("2", "2"), std::pair("true", "true"),
          std::pair("0", "second"), std::pair("0", "1")}) {
        for (const std::int32_t count : {0, 10}) {
            MakeDue(count);
            SetConsent({first, second, "third"});
            const std::int64_t before = reporter.lastReportTime;
            EXPECT_EQ(Report(), Texts{std::string("log 3 IsAgreeClause = ") + second +
                                      "(DeviceReporter::ReportDeviceInfo::DoReportDevices)"});
            EXPECT_EQ(ConsentStore_AskCount(), 2u) << first;
            EXPECT_EQ(reporter.lastReportTime, before);
            EXPECT_EQ(reporter.reportCount, count);
        }
    }
}

// --- Ten times ---

TEST_F(ReportPolicy, SendsTheListThenCountsItAndClosesTheMonitorAfterTheTenth) {
    for (const std::int32_t count : {INT_MIN, -1, 0, 8, 9}) {
        MakeDue(count);
        SetConsent({"1"});
        Texts expected{kListLine, kNoPrintersLine, kNoDisplaysLine, kListEvent,
                       WriteCount(count + 1)};
        if (count == 9) {
            expected.push_back(kClosedLine);
        }
        EXPECT_EQ(Report(), expected);
        EXPECT_EQ(ConsentStore_AskCount(), 1u);
        EXPECT_EQ(reporter.reportCount, count + 1);
        EXPECT_EQ(reporter.lastReportTime, Now());
        EXPECT_EQ(suite.registry.Value(kCountValue), count + 1);
    }
}

TEST_F(ReportPolicy, OnlyClosesTheMonitorOfAnExhaustedReporter) {
    for (const std::int32_t count : {10, 11, INT_MAX}) {
        MakeDue(count);
        EXPECT_EQ(Report(), Texts{kClosedLine});
        EXPECT_EQ(reporter.reportCount, count);
        EXPECT_EQ(reporter.lastReportTime, Now() - kDay);
    }
}

TEST_F(ReportPolicy, CountsAListThatIsEmptyAndSendsNoEvent) {
    MakeDue(3);
    reporter.devices.clear();
    EXPECT_EQ(Report(), (Texts{kListLine, kNoPrintersLine, kNoDisplaysLine, WriteCount(4)}));
    EXPECT_EQ(reporter.lastReportTime, Now());
}

TEST_F(ReportPolicy, KeepsTheCountAndClosesTheMonitorThoughItCannotBeWritten) {
    suite.registry.FailWrites(kCountValue, ERROR_ACCESS_DENIED);
    MakeDue(9);
    EXPECT_EQ(Report(),
              (Texts{kListLine, kNoPrintersLine, kNoDisplaysLine, kListEvent, WriteCount(10),
                     "log 3 failed to write reg(`anonymous-namespace'::WriteReportCountReg)",
                     kClosedLine}));
    EXPECT_EQ(reporter.reportCount, 10);
    EXPECT_EQ(reporter.lastReportTime, Now());
}

}  // namespace
