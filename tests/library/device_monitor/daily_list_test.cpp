// Lists day by day.
#include <gtest/gtest.h>

#include "library/device_monitor/monitored_plugin.h"
#include "standins/consent_store/consent_store_control.h"

namespace {

using namespace device_monitor_test;

constexpr char kRefusalLine[] =
    "log 3 IsAgreeClause = 0(DeviceReporter::ReportDeviceInfo::DoReportDevices)";

class DailyList : public MonitoredPlugin {};

TEST_F(DailyList, ComesOnceADayFromTheTwentyFourthHourOnAndIsCountedInTheRegistry) {
    Start();
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kListLine), 0u);
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    PassHours(1);
    for (int day = 1; day <= 3; ++day) {
        EXPECT_EQ(Timeline().Count(kListEvent), static_cast<std::size_t>(day));
        EXPECT_EQ(suite.registry.Value(kCountValue), day);
        PassHours(24);
    }
}

TEST_F(DailyList, IsSentOnTheMonitorsThread) {
    Start();
    PassHours(24);
    const auto events = suite.events.WithId(kListEventId);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].threadId, MonitorThreadId());
    EXPECT_EQ(
        events[0].fields,
        (test_support::EventFields{
            {"DeviceList", R"([{"class":"USB","desc":"","device":"VID_046D&PID_C52B","maker":"",)"
                           R"("name":""}])"}}));
}

TEST_F(DailyList, IsAskedForEveryHourWhileTheUserHasNotAgreed) {
    ConsentStore_SetAnswer("0");
    Start();
    PassHours(26);
    // At the hours 24, 25 and 26, twice each.
    EXPECT_EQ(Timeline().Count(kRefusalLine), 3u);
    EXPECT_EQ(ConsentStore_AskCount(), 6u);
    EXPECT_EQ(Timeline().Count(kListEvent), 0u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 0);
    // From the hour on in which the user agrees, the next day is counted.
    ConsentStore_SetAnswer("1");
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 2u);
}

}  // namespace
