// What other threads do with the monitor: ask for a report, close it, start it.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "simulation/call_text.h"
#include "standins/consent_store/consent_store_control.h"
#include "unit/device_monitor/monitor_test.h"
#include "unit/device_monitor/running_monitor.h"

namespace {

using namespace device_monitor_test;
using Texts = std::vector<std::string>;

constexpr char kReportWithoutWindow[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::ReportDevices)";

class MonitorRequest : public MonitorTest {
protected:
    void ExpectPosted(UINT message) {
        const auto posts = Journal().Calls("PostMessageW");
        ASSERT_EQ(posts.size(), 1u);
        EXPECT_EQ(posts[0]["window"],
                  simulation::CallText(static_cast<const void*>(reporter.msgWindow.load())));
        EXPECT_EQ(posts[0]["message"], std::to_string(message));
        EXPECT_EQ(posts[0]["wParam"], "0");
        EXPECT_EQ(posts[0]["lParam"], "0");
    }
};

TEST_F(MonitorRequest, BeforeThereIsAWindowOnlyLogs) {
    reporter.ReportDevices();
    reporter.StopMonitorDevices();
    EXPECT_EQ(Timeline().Texts(), (Texts{kReportWithoutWindow, kStopWithoutWindow}));
    EXPECT_EQ(Journal().Count("PostMessageW"), 0u);
}

TEST_F(MonitorRequest, ToReportPostsThePrivateMessageAndReturns) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    reporter.ReportDevices();
    ExpectPosted(2025);
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MonitorRequest, ToReportIsHandledOnTheMonitorsThread) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    MakeDue(0);  // The monitor is waiting, so the reporter is not in use.
    reporter.ReportDevices();
    ASSERT_TRUE(ComesTrue([this] { return Timeline().Count(WriteCount(1)) == 1; }));
    EXPECT_EQ(suite.events.All().at(0).threadId, monitor.ThreadId());
}

TEST_F(MonitorRequest, ToCloseEndsTheMonitor) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    reporter.StopMonitorDevices();
    ExpectPosted(WM_CLOSE);
    EXPECT_TRUE(monitor.Ends());
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 1u);
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MonitorRequest, AfterTheWindowIsGoneIsPostedToTheOldHandleWithoutALine) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    const HWND window = reporter.msgWindow;
    monitor.Close();
    EXPECT_EQ(reporter.msgWindow, window);
    Journal().Clear();
    reporter.ReportDevices();
    reporter.StopMonitorDevices();
    const auto posts = Journal().Calls("PostMessageW");
    ASSERT_EQ(posts.size(), 2u);
    EXPECT_EQ(posts[0]["window"], simulation::CallText(static_cast<const void*>(window)));
    EXPECT_EQ(posts[0].error, static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(posts[1]["message"], std::to_string(WM_CLOSE));
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MonitorRequest, ToCloseDuringAReportLetsTheReportFinish) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    MakeDue(0);
    suite.log.onLine = [this](const test_support::LogLine& line) {
        if (line.text.find(L"Peripheral list") == 0) {
            reporter.StopMonitorDevices();
        }
    };
    reporter.ReportDevices();
    ASSERT_TRUE(monitor.Ends());
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(Timeline().Count(WriteCount(1)), 1u);
    EXPECT_EQ(reporter.reportCount, 1);
    EXPECT_FALSE(IsWindow(reporter.msgWindow));
}

TEST_F(MonitorRequest, ThatWaitsBehindACloseIsLost) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    MakeDue(0);
    // Each request that is handled asks for the consent and logs its refusal.
    SetConsent({"0"});
    suite.log.onLine = [this](const test_support::LogLine&) {
        reporter.StopMonitorDevices();
        reporter.ReportDevices();
    };
    reporter.ReportDevices();
    ASSERT_TRUE(monitor.Ends());
    EXPECT_EQ(Timeline().TextsWith("log 3 IsAgreeClause = 0").size(), 1u);
    EXPECT_EQ(ConsentStore_AskCount(), 2u);
}

TEST_F(MonitorRequest, OfTheTenthReportClosesTheMonitor) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    MakeDue(9);
    reporter.ReportDevices();
    ASSERT_TRUE(monitor.Ends());
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 0u);
}

TEST_F(MonitorRequest, OfTheNinthReportKeepsTheMonitorOpen) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    MakeDue(8);
    monitor.Send(kReportMessage);
    EXPECT_EQ(Timeline().Count(WriteCount(9)), 1u);
    EXPECT_EQ(Journal().Count("PostMessageW"), 0u);
    EXPECT_TRUE(IsWindow(reporter.msgWindow));
}

}  // namespace
