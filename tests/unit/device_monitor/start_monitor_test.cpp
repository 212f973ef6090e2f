// Creating the monitor's thread.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulation/call_text.h"
#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;
using simulation::ResourceKind;
using Texts = std::vector<std::string>;

class StartedMonitor : public MonitorTest {
protected:
    /// A test that failed must not take the reporter from under its thread.
    ~StartedMonitor() override {
        if (World().ledger.CountAcquired(ResourceKind::Thread) > 0 && !threadHasEnded) {
            EndThread();
        }
    }

    /// Closes the window and waits for the very end of the thread.
    void EndThread() {
        const auto windows = Journal().Calls("CreateWindowExW");
        ASSERT_EQ(windows.size(), 1u);
        const HANDLE thread = OpenThread(SYNCHRONIZE, FALSE, windows[0].threadId);
        ASSERT_NE(thread, nullptr);
        reporter.StopMonitorDevices();
        EXPECT_EQ(WaitForSingleObject(thread, 30'000), WAIT_OBJECT_0);
        CloseHandle(thread);
        threadHasEnded = true;
    }

    bool MonitorWaits() {
        return ComesTrue([this] { return Journal().Count("GetMessageW") > 0; });
    }

private:
    bool threadHasEnded = false;
};

TEST_F(StartedMonitor, HasAThreadWithDefaultSettingsAndTheReporterAsParameter) {
    reporter.StartMonitorDevices();
    ASSERT_TRUE(MonitorWaits());
    const auto calls = Journal().Calls("CreateThread");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0]["security"], "null");
    EXPECT_EQ(calls[0]["stackSize"], "0");
    EXPECT_NE(calls[0]["start"], "null");
    EXPECT_EQ(calls[0]["parameter"], simulation::CallText(static_cast<const void*>(&reporter)));
    EXPECT_EQ(calls[0]["flags"], "0");
    EXPECT_EQ(calls[0]["threadId"], "null");
    EndThread();
}

TEST_F(StartedMonitor, RunsTheMonitorOnThatThread) {
    reporter.StartMonitorDevices();
    ASSERT_TRUE(MonitorWaits());
    const auto windows = Journal().Calls("CreateWindowExW");
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_NE(windows[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(windows[0]["parameter"], simulation::CallText(static_cast<const void*>(&reporter)));
    EndThread();
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(StartedMonitor, ClosesTheThreadsHandleAtOnce) {
    reporter.StartMonitorDevices();
    EXPECT_EQ(World().ledger.CountAcquired(ResourceKind::Thread), 1u);
    EXPECT_EQ(World().ledger.CountOpen(ResourceKind::Thread), 0u);
    ASSERT_TRUE(MonitorWaits());
    EndThread();
}

TEST_F(StartedMonitor, GivesEverythingBackAtItsEnd) {
    reporter.StartMonitorDevices();
    ASSERT_TRUE(MonitorWaits());
    EndThread();
    EXPECT_TRUE(World().ledger.Balanced()) << World().ledger;
}

TEST_F(StartedMonitor, ThatGetsNoThreadLogsTheErrorNumber) {
    World().faults.FailCall("CreateThread", 1, 1455);
    reporter.StartMonitorDevices();
    EXPECT_EQ(Timeline().Texts(),
              Texts{"log 3 failed to create monitor thread, lastError = "
                    "1455(DeviceReporter::ReportDeviceInfo::StartMonitorDevices)"});
    EXPECT_EQ(Journal().Count("CloseHandle"), 0u);
}

TEST_F(StartedMonitor, AsksNeitherTheGatesNorTheCount) {
    reporter.reportCount = 10;
    reporter.StartMonitorDevices();
    ASSERT_TRUE(MonitorWaits());
    EndThread();
    EXPECT_TRUE(Timeline().Texts().empty());
}

}  // namespace
