// At most one list in 24 hours of the steady clock.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "standins/consent_store/consent_store_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "unit/device_monitor/monitor_test.h"

namespace {

using namespace device_monitor_test;

/// What the system's counter can tell apart.
constexpr std::int64_t kTick = 100;
constexpr std::int64_t kSecond = 1'000'000'000;

class DailyLimit : public MonitorTest {
protected:
    DailyLimit() { MakeDue(0); }

    bool Reports() {
        const std::size_t before = Timeline().Count(kListLine);
        reporter.DoReportDevices();
        return Timeline().Count(kListLine) > before;
    }
};

TEST_F(DailyLimit, HoldsOneTickBefore24Hours) {
    reporter.lastReportTime = Now() - kDay + kTick;
    EXPECT_FALSE(Reports());
}

TEST_F(DailyLimit, HoldsOneNanosecondBefore24Hours) {
    reporter.lastReportTime = Now() - kDay + 1;
    EXPECT_FALSE(Reports());
}

TEST_F(DailyLimit, IsOverAfterExactly24Hours) {
    reporter.lastReportTime = Now() - kDay;
    EXPECT_TRUE(Reports());
}

TEST_F(DailyLimit, IsOverOneTickAfter24Hours) {
    reporter.lastReportTime = Now() - kDay - kTick;
    EXPECT_TRUE(Reports());
}

TEST_F(DailyLimit, HoldsWhenTheClockRunsUpToIt) {
    reporter.lastReportTime = Now();
    World().clock.Advance(std::chrono::nanoseconds(kDay - kTick));
    EXPECT_FALSE(Reports());
    World().clock.Advance(std::chrono::nanoseconds(kTick));
    EXPECT_TRUE(Reports());
}

TEST_F(DailyLimit, BeginsAnewWithEachReport) {
    EXPECT_TRUE(Reports());
    EXPECT_EQ(reporter.lastReportTime, Now());
    EXPECT_FALSE(Reports());
    World().clock.Advance(std::chrono::hours(23));
    EXPECT_FALSE(Reports());
    World().clock.Advance(std::chrono::hours(1));
    EXPECT_TRUE(Reports());
}

TEST_F(DailyLimit, CountsFromTheMomentBetweenSendingAndWritingTheCount) {
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
    EXPECT_TRUE(Reports());
    EXPECT_EQ(reporter.lastReportTime, begin + (7 + 11) * kSecond);
    EXPECT_EQ(Now(), begin + (7 + 11 + 13) * kSecond);
}

TEST_F(DailyLimit, ThatHoldsLeavesEverythingAlone) {
    reporter.lastReportTime = Now() - kDay + kTick;
    const std::int64_t before = reporter.lastReportTime;
    reporter.DoReportDevices();
    EXPECT_TRUE(Timeline().Texts().empty());
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    EXPECT_EQ(reporter.lastReportTime, before);
    EXPECT_EQ(reporter.reportCount, 0);
    EXPECT_EQ(reporter.devices.size(), 1u);
    EXPECT_EQ(Journal().Count("EnumPrintersW"), 0u);
}

TEST_F(DailyLimit, HoldsForAnExhaustedReporterToo) {
    reporter.reportCount = 10;
    reporter.lastReportTime = Now() - kDay + kTick;
    reporter.DoReportDevices();
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(DailyLimit, HoldsForAReportOfTheFuture) {
    reporter.lastReportTime = Now() + 10 * kDay;
    EXPECT_FALSE(Reports());
}

TEST_F(DailyLimit, IsNotBoundToTheWallClock) {
    reporter.lastReportTime = Now() - kDay + kTick;
    World().clock.SetUnixSeconds(2'000'000'000);
    EXPECT_FALSE(Reports());
    World().clock.SetUnixSeconds(2'100'000'000);
    EXPECT_FALSE(Reports());
}

}  // namespace
