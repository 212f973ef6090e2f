#include "host/tick_schedule.h"

#include <gtest/gtest.h>

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

constexpr wchar_t kLoopLine[] =
    L"BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";

std::wstring RegisterLine(int interval) {
    return L"Register timer:" + std::to_wstring(interval) +
           L"(TimerReportMgr::RegisterReportCallback)";
}

TEST(TickSchedule, KnowsNothingBeforeARegistration) {
    EXPECT_EQ(TickSchedule().NextRun(), std::nullopt);
}

TEST(TickSchedule, CountsFromTheRegistrationUntilTheFirstWait) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(12), seconds(1));
    schedule.OnLogLine(RegisterLine(24), seconds(2));
    EXPECT_EQ(schedule.NextRun(), "0d 12:00:02 (12-hour reports)");
    EXPECT_EQ(schedule.HoursPassed(seconds(3)), 0);
}

TEST(TickSchedule, TicksAtTheGreatestCommonDivisor) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(6), seconds(0));
    schedule.OnLogLine(RegisterLine(4), seconds(0));
    schedule.OnLogLine(kLoopLine, seconds(0));
    EXPECT_EQ(schedule.NextRun(), "0d 02:00:00 (no report)");
    schedule.OnLogLine(kLoopLine, hours(2) + seconds(5));
    EXPECT_EQ(schedule.NextRun(), "0d 04:00:05 (4-hour reports)");
}

TEST(TickSchedule, NamesEveryIntervalThatIsDue) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(12), seconds(0));
    schedule.OnLogLine(RegisterLine(24), seconds(0));
    schedule.OnLogLine(kLoopLine, seconds(0));
    schedule.OnLogLine(kLoopLine, hours(12));
    EXPECT_EQ(schedule.NextRun(), "1d 00:00:00 (12-hour, 24-hour reports)");
}

TEST(TickSchedule, LeavesOutIntervalsThatThePluginTurnsDown) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(0), seconds(0));
    schedule.OnLogLine(RegisterLine(-5), seconds(0));
    EXPECT_EQ(schedule.NextRun(), std::nullopt);
}

TEST(TickSchedule, CountsAnHourOnceItsWaitIsOver) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(12), seconds(0));
    schedule.OnLogLine(kLoopLine, seconds(10));
    EXPECT_EQ(schedule.HoursPassed(hours(12) + seconds(9)), 0);
    EXPECT_EQ(schedule.HoursPassed(hours(12) + seconds(10)), 12);
    schedule.OnLogLine(kLoopLine, hours(13));
    EXPECT_EQ(schedule.HoursPassed(hours(13)), 12);
    EXPECT_EQ(schedule.HoursPassed(hours(25)), 24);
}

TEST(TickSchedule, ForgetsEverythingWhenThePluginStops) {
    TickSchedule schedule;
    schedule.OnLogLine(RegisterLine(12), seconds(0));
    schedule.OnLogLine(kLoopLine, seconds(0));
    schedule.Clear();
    EXPECT_EQ(schedule.NextRun(), std::nullopt);
    EXPECT_EQ(schedule.HoursPassed(hours(12)), 0);
}

}  // namespace
}  // namespace host
