// What happens in the story. Waits of the plug-in end late, the more so on a busy computer: lower
// bounds of times are exact, upper ones generous, and where a count depends on how many waits
// fitted in, the log says how many did.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "accelerated/host/played_story.h"
#include "host/sent_event.h"
#include "library/host/host_program.h"

namespace host_test {
namespace {

using nlohmann::json;
using std::chrono::hours;
using std::chrono::seconds;
using testing::StartsWith;

/// Waits of the timer that ended by themselves: Stop ends the last one.
std::size_t WaitsEnded(const std::vector<std::string>& log) {
    return CountLines(log, "BigdataTimerReportFrame loop(") - 1;
}

/// How many waits had begun before each line that begins so.
std::vector<std::size_t> WaitsBefore(const std::vector<std::string>& log,
                                     const std::string& start) {
    std::vector<std::size_t> waits;
    std::size_t begun = 0;
    for (const std::string& line : log) {
        begun += CountLines({line}, "BigdataTimerReportFrame loop(");
        if (CountLines({line}, start) != 0) {
            waits.push_back(begun);
        }
    }
    return waits;
}

class HostStory : public testing::Test {
protected:
    const PlayedStory& story = PlayedStory::Instance();
};

TEST_F(HostStory, EndsInOrder) {
    EXPECT_EQ(story.Result().exitCode, 0U);
    EXPECT_EQ(story.Result().errors, "");
    const std::vector<std::string> steps = ShownLines(story.Result().output, "step");
    EXPECT_EQ(steps.back(), "Unload TallyportPlugin.dll");
    EXPECT_EQ(CountLines(steps, "Started"), 2U);
    EXPECT_EQ(CountLines(steps, "Stopped"), 2U);
}

TEST_F(HostStory, SendsBiosInformationEvery72Hours) {
    const std::vector<PlayedEvent> events = story.EventsWithId(host::kBiosInfoEventId);
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].time, seconds(0));
    for (std::size_t i = 1; i < events.size(); ++i) {
        EXPECT_GE(events[i].time - events[i - 1].time, hours(72));
        // It is looked at every twelve hours.
        EXPECT_LE(events[i].time - events[i - 1].time, hours(72 + 12) + 3 * kLateness);
        EXPECT_EQ(events[i].fields, events[0].fields);
    }
    EXPECT_EQ(events[0].fields, json::parse(R"([{"key": "Product", "value": "CB-L165"},
                              {"key": "String7", "value": "Corvane Notebook 14 G5"},
                              {"key": "Version", "value": "L165C.0242"}])"));
}

TEST_F(HostStory, SendsTheOptimisationStateAtEachStartAndDaily) {
    const std::vector<PlayedEvent> events = story.EventsWithId(host::kPopUpBlockInfoEventId);
    const std::size_t ofFirstStart = 1 + WaitsEnded(story.LogOfFirstStart()) / 24;
    // Without the hourly report a wait takes twelve hours.
    const std::size_t ofSecondStart = 1 + WaitsEnded(story.LogOfSecondStart()) * 12 / 24;
    ASSERT_EQ(events.size(), ofFirstStart + ofSecondStart);
    EXPECT_GE(ofFirstStart, 6U);
    for (std::size_t i = 0; i < ofFirstStart; ++i) {
        EXPECT_GE(events[i].time, hours(24) * i);
        EXPECT_EQ(events[i].fields, json::parse(R"([{"key": "mode", "value": "OPEN_MODE"},
                                                    {"key": "status", "value": "1"},
                                                    {"key": "version", "value": "12.0.3.105"}])"));
    }
    EXPECT_GE(events[ofFirstStart].time + kLateness, hours(240));
}

TEST_F(HostStory, SendsTheControllersLogWhenTheFirmwareReports) {
    const std::vector<PlayedEvent> events = story.EventsWithId(host::kEcLogEventId);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_GE(events[0].time + kLateness, hours(36));
    EXPECT_LE(events[0].time, hours(36) + kLateness);
    ASSERT_EQ(events[0].fields.size(), 1U);
    EXPECT_EQ(events[0].fields[0]["key"], "ECLog");
    const auto log = events[0].fields[0]["value"].get<std::string>();
    EXPECT_EQ(log.size(), 1012U);
    EXPECT_THAT(log, StartsWith("0x010x0a0xff0x000x12"));
}

TEST_F(HostStory, SendsADeviceListForEachDayWithConsentUpToTheTenth) {
    const std::vector<PlayedList> lists = story.DeviceLists();
    // The machine has sent two before.
    ASSERT_EQ(lists.size(), 8U);
    EXPECT_EQ(CountLines(story.LogOfFirstStart(), "Peripheral list("), 8U);
    EXPECT_GE(lists[0][0].time, hours(24));
    const std::vector<std::size_t> waits = WaitsBefore(story.LogOfFirstStart(), "Peripheral list(");
    ASSERT_EQ(waits.size(), 8U);
    for (std::size_t i = 1; i < lists.size(); ++i) {
        EXPECT_GE(lists[i][0].time - lists[i - 1][0].time, hours(24)) << "list " << i;
        // Fewer waits than hours when they end late, an hour or two more when sending takes long;
        // the fourth list waits for consent as well.
        EXPECT_LE(waits[i] - waits[i - 1], i == 3 ? 50U : 26U) << "list " << i;
    }
}

TEST_F(HostStory, SendsNoDeviceListOnTheDayWithoutConsent) {
    const std::vector<PlayedList> lists = story.DeviceLists();
    ASSERT_EQ(lists.size(), 8U);
    EXPECT_LE(lists[2].back().time, hours(4 * 24) + kLateness);
    EXPECT_GE(lists[3].front().time + kLateness, hours(5 * 24));
    // It asks at each hour of the day from when a list is due.
    const std::size_t refusals =
        CountLines(story.LogOfFirstStart(),
                   "IsAgreeClause = 0(DeviceReporter::ReportDeviceInfo::DoReportDevices)");
    EXPECT_GE(refusals, 1U);
    EXPECT_LE(refusals, 24U);
}

TEST_F(HostStory, ListsThePluggedDeviceFromThenOn) {
    const std::string& output = story.Result().output;
    const std::string untilPlugged = output.substr(0, output.find(" is plugged in ("));
    const std::size_t eventsBefore = CountLines(ShownLines(untilPlugged, "event"), "992614533 ");
    std::size_t events = 0;
    std::vector<bool> hasStick;
    for (const PlayedList& list : story.DeviceLists()) {
        const std::vector<json> devices = DevicesOf(list, "DeviceList");
        hasStick.push_back(std::any_of(devices.begin(), devices.end(), [](const json& device) {
            return device.at("device") == "VID_0781&PID_5581";
        }));
        EXPECT_EQ(hasStick.back(), events >= eventsBefore);
        events += list.size();
    }
    EXPECT_FALSE(hasStick.front());
    EXPECT_TRUE(hasStick.back());
}

TEST_F(HostStory, EndsTheMonitorWithTheTenthList) {
    EXPECT_THAT(ShownLines(story.Result().output, "note"),
                testing::ElementsAre("2 of 10 device lists were sent before this run",
                                     "The device monitor ended: 10 of 10 device lists sent",
                                     "It started no device monitor: 10 of 10 device lists sent"));
    const std::string& output = story.Result().output;
    const std::size_t lastList = output.rfind("event  992614533 device list");
    const std::size_t end = output.find("The device monitor ended");
    const std::size_t restart = output.find("the plug-in is restarted");
    EXPECT_LT(lastList, end);
    EXPECT_LT(end, restart);
    EXPECT_NE(restart, std::string::npos);
}

TEST_F(HostStory, StartsNoMonitorTheSecondTime) {
    EXPECT_EQ(CountLines(story.LogOfFirstStart(), "Register timer:1("), 1U);
    const std::string noWindowAtStop =
        "msgWindow is null(DeviceReporter::ReportDeviceInfo::StopMonitorDevices)";
    EXPECT_EQ(CountLines(story.LogOfFirstStart(), noWindowAtStop), 0U);
    std::vector<std::string> others = story.LogOfSecondStart();
    others.erase(std::remove_if(others.begin(), others.end(),
                                [](const std::string& line) {
                                    return line.find("BigdataTimerReportFrame loop(") == 0;
                                }),
                 others.end());
    EXPECT_THAT(others,
                testing::ElementsAre("Register timer:12(TimerReportMgr::RegisterReportCallback)",
                                     "Register timer:24(TimerReportMgr::RegisterReportCallback)",
                                     noWindowAtStop));
}

}  // namespace
}  // namespace host_test
