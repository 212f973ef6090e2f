#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <stdexcept>
#include <string>
#include <vector>

#include "library/lifecycle/running_plugin.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using test_support::EventFields;
using testing::ElementsAre;
using testing::StartsWith;

class PluginStart : public RunningPlugin {};

TEST_F(PluginStart, RegistersEachReportBeforeItsFirstRunAndSubscribesLast) {
    plugin->Initialize();
    Start();
    const std::string key = "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
    EXPECT_THAT(
        TextsOfThisThread(),
        ElementsAre(RegisterLine(12), std::string("read int64 ") + kBiosStamp + " mask 0xF003F",
                    "SmBiosHelper::GetInstance", "SmBiosHelper::GetBoardProductName",
                    "SmBiosHelper::GetOemProductName", "SmBiosHelper::GetBIOSSysVersion",
                    "event 992614500",
                    StartsWith(std::string("write int64 ") + kBiosStamp + " mask 0xF003F = "),
                    RegisterLine(24), "exists " + key,
                    "read int32 " + key + ":PopUpBlockingStatus mask 0xF003F",
                    "read int32 " + key + ":PowerfulModeStatus mask 0xF003F", "event 992614518",
                    "log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)",
                    "BiosEventMonitor::StartEventMonitor"));
}

TEST_F(PluginStart, SendsTheBiosAndTheOptimisationReport) {
    Start();
    const std::vector<test_support::Event> events = suite.events.All();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].id, 992614500);
    EXPECT_EQ(events[0].fields,
              (EventFields{{"Product", "Board"}, {"String7", "Oem"}, {"Version", "Bios"}}));
    EXPECT_EQ(events[1].id, 992614518);
    EXPECT_EQ(events[1].fields,
              (EventFields{{"mode", "OPEN_MODE"}, {"status", "0"}, {"version", "1.2.3.4"}}));
}

TEST_F(PluginStart, RegistersTheBiosReportAlsoWhenNoneIsDue) {
    suite.registry.SetValue(kBiosStamp, std::time(nullptr));
    Start();
    EXPECT_EQ(suite.timeline.Count(RegisterLine(12)), 1u);
    EXPECT_EQ(suite.timeline.Count("event 992614500"), 0u);
}

TEST_F(PluginStart, StartsTheTimerLoopBeforeItSubscribesToFirmwareEvents) {
    bool loopCameFirst = false;
    suite.onWmiCall = [&](const std::string& operation, const std::string&) {
        if (operation == "StartEventMonitor") {
            loopCameFirst = suite.timeline.WaitFor(kLoopLine, 1, test_support::kPatience);
        }
    };
    Start();
    EXPECT_TRUE(loopCameFirst);
}

TEST_F(PluginStart, SubscribesOnTheHostsThread) {
    DWORD subscribingThread = 0;
    suite.onWmiCall = [&](const std::string&, const std::string&) {
        subscribingThread = GetCurrentThreadId();
    };
    Start();
    EXPECT_EQ(subscribingThread, GetCurrentThreadId());
}

TEST_F(PluginStart, SucceedsSilentlyWhenFirmwareEventsAreRefused) {
    WmiKit_SetStartResult(-5);
    Start();
    EXPECT_EQ(TextsOfThisThread().back(), "BiosEventMonitor::StartEventMonitor");
    EXPECT_EQ(WmiKit_FireFirmwareEvent(675), 0);
}

TEST_F(PluginStart, TicksEveryTwelveHoursWithTheTwoReportsOnly) {
    Start();
    EXPECT_EQ(std::chrono::round<minutes>(loop.LatestWait()), hours(12));
    EXPECT_EQ(suite.timeline.Count(kLoopLine), 1u);
}

TEST_F(PluginStart, LetsAnExceptionOutOfEitherReportThrough) {
    for (const int report : {992614500, 992614518}) {
        suite.events.onEvent = [report](const test_support::Event& event) {
            if (event.id == report) {
                throw std::runtime_error("not sent");
            }
        };
        EXPECT_THROW(plugin->Start(), std::runtime_error) << report;
    }
}

TEST_F(PluginStart, AfterAStopStartsALoopThatEndsAtOnce) {
    Start();
    Stop();
    EXPECT_TRUE(plugin->Start());
    EXPECT_TRUE(plugin->Stop());
    EXPECT_EQ(suite.timeline.Count(kLoopLine), 1u);
    EXPECT_EQ(suite.timeline.Count(RegisterLine(12)), 2u);
}

}  // namespace
