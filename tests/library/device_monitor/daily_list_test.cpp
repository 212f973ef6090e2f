// Lists day by day.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "standins/consent_store/consent_store_control.h"

namespace {

using namespace device_monitor_test;

std::string RefusalLine(const std::string& answer) {
    return "log 3 IsAgreeClause = " + answer +
           "(DeviceReporter::ReportDeviceInfo::DoReportDevices)";
}

class DailyList : public MonitoredPlugin {};

TEST_F(DailyList, ComesFirstAtTheTwentyFourthHour) {
    Start();
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kListLine), 0u);
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
}

TEST_F(DailyList, IsSentOnTheMonitorsThread) {
    Start();
    PassHours(24);
    const auto events = suite.events.WithId(kListEventId);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].threadId, MonitorThreadId());
    ASSERT_EQ(events[0].fields.size(), 1u);
    EXPECT_EQ(events[0].fields[0].first, "DeviceList");
    EXPECT_EQ(events[0].fields[0].second,
              R"([{"class":"USB","desc":"","device":"VID_046D&PID_C52B","maker":"","name":""}])");
}

TEST_F(DailyList, ComesOnceADayAndIsCountedInTheRegistry) {
    Start();
    for (int day = 1; day <= 3; ++day) {
        PassHours(24);
        EXPECT_EQ(Timeline().Count(kListEvent), static_cast<std::size_t>(day));
        EXPECT_EQ(suite.registry.Value(kCountValue), day);
    }
}

TEST_F(DailyList, IsAskedForEveryHourWhileTheUserHasNotAgreed) {
    ConsentStore_SetAnswer("0");
    Start();
    PassHours(26);
    // At the hours 24, 25 and 26, twice each.
    EXPECT_EQ(Timeline().Count(RefusalLine("0")), 3u);
    EXPECT_EQ(ConsentStore_AskCount(), 6u);
    EXPECT_EQ(Timeline().Count(kListEvent), 0u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 0);
}

TEST_F(DailyList, ComesAtTheNextHourAfterTheUserAgrees) {
    ConsentStore_SetAnswer("");
    Start();
    PassHours(30);
    ConsentStore_SetAnswer("1");
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    // The next day is counted from then on.
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 2u);
}

TEST_F(DailyList, StopsWhileConsentIsWithdrawn) {
    Start();
    PassHours(24);
    ConsentStore_SetAnswer("0");
    PassHours(48);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(Timeline().Count(RefusalLine("0")), 25u);
    ConsentStore_SetAnswer("1");
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kListEvent), 2u);
}

}  // namespace
