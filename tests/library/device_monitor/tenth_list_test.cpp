// The last list of an installation.
#include <gtest/gtest.h>

#include "library/device_monitor/monitored_plugin.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;

class TenthList : public MonitoredPlugin {};

TEST_F(TenthList, EndsTheMonitorForGoodAndIsFollowedByHoursWithoutLineAndEvent) {
    suite.registry.SetValue(kCountValue, 9);
    Start();
    PassHours(24);
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 1u);
    EXPECT_EQ(Journal().Count("UnregisterDeviceNotification"), 1u);
    PassHours(30);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 0u);
    // The hours still post, to a window that is gone.
    EXPECT_EQ(Journal().Calls("PostMessageW").back().error,
              static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    Stop();
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 0u);
}

TEST_F(TenthList, IsTheLastOfAFreshInstallationWhateverTime) {
    Start();
    PassHours(9 * 24);
    EXPECT_EQ(Timeline().Count(kListEvent), 9u);
    EXPECT_NE(test_support::FindMonitorWindow(), nullptr);
    PassHours(24);
    EXPECT_EQ(Timeline().Count(kListEvent), 10u);
    EXPECT_TRUE(MonitorEnds());
    PassHours(48);
    EXPECT_EQ(Timeline().Count(kListEvent), 10u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
}

/// The library once more in the same process, as after a restart of the host.
TEST(NextRun, OfAnExhaustedInstallationStartsNoMonitor) {
    class Run : public MonitoredPlugin {
    public:
        explicit Run(int count) { suite.registry.SetValue(kCountValue, count); }
        void TestBody() override {}
        int LiveADay(bool expectMonitor) {
            Start(expectMonitor);
            if (expectMonitor) {
                // Each run waits a whole day again.
                PassHours(23);
                EXPECT_EQ(Timeline().Count(kListEvent), 0u);
                PassHours(1);
            }
            Stop();
            EXPECT_EQ(Journal().Count("CreateThread"), expectMonitor ? 1u : 0u);
            EXPECT_EQ(Timeline().Count(kListEvent), expectMonitor ? 1u : 0u);
            return static_cast<int>(suite.registry.Value(kCountValue).value_or(-1));
        }
    };
    int count = 8;
    for (const bool expectMonitor : {true, true, false, false}) {
        count = Run(count).LiveADay(expectMonitor);
    }
    EXPECT_EQ(count, 10);
}

}  // namespace
