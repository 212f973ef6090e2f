// At most ten lists per installation, and what a report does in which order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;
using Texts = std::vector<std::string>;

constexpr char kNoDisplaysLine[] =
    "log 3 QueryDisplayConfig failed!(`anonymous-namespace'::GetDisplayInfo)";
constexpr char kNoPrintersLine[] = "log 3 printerInfoList is null(DeviceReporter::ParsePrinters)";
constexpr char kWriteFailedLine[] =
    "log 3 failed to write reg(`anonymous-namespace'::WriteReportCountReg)";

class ReportLimit : public MonitorTest {
protected:
    Texts ReportWithCount(std::int32_t reportCount) {
        MakeDue(reportCount);
        Timeline().Clear();
        reporter.DoReportDevices();
        return Timeline().Texts();
    }
};

TEST_F(ReportLimit, LetsAListGoOutAndThenCountsIt) {
    const Texts expected{kListLine, kNoPrintersLine, kNoDisplaysLine, kListEvent, WriteCount(1)};
    EXPECT_EQ(ReportWithCount(0), expected);
    EXPECT_EQ(reporter.reportCount, 1);
    EXPECT_EQ(suite.registry.Value(kCountValue), 1);
}

TEST_F(ReportLimit, LeavesTheMonitorOpenAfterTheNinthList) {
    const Texts expected{kListLine, kNoPrintersLine, kNoDisplaysLine, kListEvent, WriteCount(9)};
    EXPECT_EQ(ReportWithCount(8), expected);
    EXPECT_EQ(reporter.reportCount, 9);
}

TEST_F(ReportLimit, ClosesTheMonitorAfterTheTenthList) {
    const Texts expected{kListLine,  kNoPrintersLine, kNoDisplaysLine,
                         kListEvent, WriteCount(10),  kStopWithoutWindow};
    EXPECT_EQ(ReportWithCount(9), expected);
    EXPECT_EQ(reporter.reportCount, 10);
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
}

TEST_F(ReportLimit, OnlyClosesTheMonitorOfAnExhaustedReporter) {
    for (const std::int32_t count : {10, 11, INT32_MAX}) {
        EXPECT_EQ(ReportWithCount(count), Texts{kStopWithoutWindow});
        EXPECT_EQ(reporter.reportCount, count);
        EXPECT_EQ(reporter.lastReportTime, Now() - kDay);
    }
    EXPECT_FALSE(suite.registry.Value(kCountValue).has_value());
}

TEST_F(ReportLimit, CountsOnFromNegativeNumbers) {
    const Texts expected{kListLine, kNoPrintersLine, kNoDisplaysLine, kListEvent, WriteCount(0)};
    EXPECT_EQ(ReportWithCount(-1), expected);
    EXPECT_EQ(ReportWithCount(INT32_MIN).back(), WriteCount(INT32_MIN + 1));
}

TEST_F(ReportLimit, CountsAListThatIsEmptyAndSendsNoEvent) {
    MakeDue(3);
    reporter.devices.clear();
    reporter.DoReportDevices();
    EXPECT_EQ(Timeline().Texts(),
              (Texts{kListLine, kNoPrintersLine, kNoDisplaysLine, WriteCount(4)}));
    EXPECT_EQ(reporter.reportCount, 4);
    EXPECT_EQ(reporter.lastReportTime, Now());
}

TEST_F(ReportLimit, KeepsTheCountWhenItCannotBeWritten) {
    suite.registry.SetValue(kCountValue, 3);
    suite.registry.FailWrites(kCountValue, ERROR_ACCESS_DENIED);
    const Texts expected{kListLine,  kNoPrintersLine, kNoDisplaysLine,
                         kListEvent, WriteCount(4),   kWriteFailedLine};
    EXPECT_EQ(ReportWithCount(3), expected);
    EXPECT_EQ(reporter.reportCount, 4);
    EXPECT_EQ(reporter.lastReportTime, Now());
    EXPECT_EQ(suite.registry.Value(kCountValue), 3);
}

TEST_F(ReportLimit, ClosesTheMonitorAfterTheTenthListEvenIfItCannotBeWritten) {
    suite.registry.FailWrites(kCountValue, ERROR_ACCESS_DENIED);
    const Texts expected{kListLine,      kNoPrintersLine,  kNoDisplaysLine,   kListEvent,
                         WriteCount(10), kWriteFailedLine, kStopWithoutWindow};
    EXPECT_EQ(ReportWithCount(9), expected);
    EXPECT_EQ(reporter.reportCount, 10);
}

TEST_F(ReportLimit, LetsTenListsGoOutOfAFreshInstallation) {
    MakeDue(0);
    for (int day = 0; day < 20; ++day) {
        reporter.DoReportDevices();
        World().clock.Advance(std::chrono::hours(24));
    }
    EXPECT_EQ(Timeline().Count(kListEvent), 10u);
    EXPECT_EQ(reporter.reportCount, 10);
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
    // The tenth closes the monitor, and so does each later request.
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 11u);
}

TEST_F(ReportLimit, DoesNotReadTheCountAgain) {
    suite.registry.SetValue(kCountValue, 10);
    ReportWithCount(2);
    EXPECT_EQ(Timeline().Count(kReadCount), 0u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 3);
}

}  // namespace
