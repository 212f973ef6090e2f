// Stop while the monitor is busy.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;

class StopDuringAReport : public MonitoredPlugin {
protected:
    StopDuringAReport() {
        // Holds the monitor's thread inside its report.
        suite.log.onLine = [this](const test_support::LogLine& line) {
            if (line.text.find(L"printerInfoList is null") == 0) {
                SetEvent(reporting.Get());
                WaitForSingleObject(mayGoOn.Get(), 10'000);
            }
        };
    }

    /// The hour in which the list is due, without waiting for the monitor.
    void BeginReport() {
        Start();
        PassHours(23);
        ASSERT_TRUE(hours.PassTick());
        ASSERT_EQ(WaitForSingleObject(reporting.Get(), 10'000), WAIT_OBJECT_0);
    }

    const ScopedKernelHandle reporting{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    const ScopedKernelHandle mayGoOn{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

TEST_F(StopDuringAReport, DoesNotWaitForItAndItIsFinished) {
    BeginReport();
    EXPECT_TRUE(plugin->Stop());
    EXPECT_EQ(Timeline().Count(kListEvent), 0u);
    EXPECT_NE(test_support::FindMonitorWindow(), nullptr);
    SetEvent(mayGoOn.Get());
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 1);
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
}

TEST_F(StopDuringAReport, OfTheTenthListAsksTwiceToCloseAndClosesOnce) {
    suite.registry.SetValue(kCountValue, 9);
    BeginReport();
    EXPECT_TRUE(plugin->Stop());
    SetEvent(mayGoOn.Get());
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 1u);
    EXPECT_EQ(Journal().Count("UnregisterDeviceNotification"), 1u);
}

TEST_F(StopDuringAReport, LeavesTheLibraryMappedUntilTheReportIsFinished) {
    BeginReport();
    EXPECT_TRUE(plugin->Stop());
    EXPECT_EQ(World().ledger.CountOpen(simulation::ResourceKind::ModuleReference), 1u);
    SetEvent(mayGoOn.Get());
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(World().ledger.CountOpen(simulation::ResourceKind::ModuleReference), 0u);
}

TEST(StopWithAMonitor, LetsTheLibraryGo) {
    class Run : public MonitoredPlugin {
    public:
        void TestBody() override {
            Start();
            Stop();
        }
    };
    for (int i = 0; i < 5; ++i) {
        Run().TestBody();
        ASSERT_FALSE(test_support::IsLoaded(L"TallyportPlugin.dll"));
    }
}

}  // namespace
