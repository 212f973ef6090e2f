// A week of the unmodified library, driven as a host drives it, on a clock on which a day takes
// less than three seconds.
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "standins/board_info/board_info_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "support/plugin_module.h"
#include "support/recorded_events.h"
#include "support/recorded_log.h"
#include "support/registry_sandbox.h"
#include "util/console_user.h"

namespace {

using std::chrono::hours;
using test_support::Event;
using test_support::EventFields;
using Clock = std::chrono::system_clock;

constexpr char kLoopLine[] =
    "log 3 BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";
constexpr char kBiosEvent[] = "event 992614500";
constexpr char kOptimisationEvent[] = "event 992614518";

/// Longer than the test needs: a hundred seconds of real time.
constexpr hours kPatience{1000};

/// On the real registry, in keys of the test's own.
class Week : public testing::Test {
protected:
    Week() {
        BoardInfo_SetTexts(L"Board", L"Oem", L"Bios");
        EditionAdapt_SetFeature("ReportDeviceList", 0);
        // The plug-in finds the same account: it runs in this process.
        const std::wstring key = GetActiveUserSid() + L"\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
        SetSwitch(key, L"PopUpBlockingStatus", 1);
        SetSwitch(key, L"PowerfulModeStatus", 0);
    }
    ~Week() override {
        EditionAdapt_Reset();
        BoardInfo_Reset();
    }

    static void SetSwitch(const std::wstring& key, const wchar_t* value, DWORD number) {
        ASSERT_EQ(
            RegSetKeyValueW(HKEY_USERS, key.c_str(), value, REG_DWORD, &number, sizeof(number)),
            ERROR_SUCCESS);
    }

    /// After how many ticks each event of this name came; 0 is Start itself.
    std::vector<int> TicksOf(const std::string& event) const {
        std::vector<int> ticks;
        int tick = 0;
        for (const std::string& text : timeline.Texts()) {
            if (text == kLoopLine) {
                ++tick;  // A tick begins.
            } else if (text == event) {
                ticks.push_back(tick);
            }
        }
        return ticks;
    }

    static void ExpectSpacing(const std::vector<Event>& events, hours least, hours less) {
        for (std::size_t i = 1; i < events.size(); ++i) {
            EXPECT_GE(events[i].time - events[i - 1].time, least);
            EXPECT_LT(events[i].time - events[i - 1].time, less);
        }
    }

    const test_support::RegistrySandbox machineKeys{HKEY_LOCAL_MACHINE};
    const test_support::RegistrySandbox userKeys{HKEY_USERS};
    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    test_support::RecordedEvents events{timeline};
};

TEST_F(Week, SendsTheBiosReportEach72HoursAndTheOptimisationReportEach24) {
    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
    const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
    ASSERT_TRUE(plugin->Start());
    // Once at Start and at the end of each of the seven days.
    ASSERT_TRUE(timeline.WaitFor(kOptimisationEvent, 1 + 7, kPatience));
    ASSERT_TRUE(plugin->Stop());

    // Six ticks are 72 hours, two are 24.
    EXPECT_EQ(TicksOf(kBiosEvent), (std::vector<int>{0, 6, 12}));
    EXPECT_EQ(TicksOf(kOptimisationEvent), (std::vector<int>{0, 2, 4, 6, 8, 10, 12, 14}));
    ExpectSpacing(events.WithId(992614500), hours(72), hours(84));
    ExpectSpacing(events.WithId(992614518), hours(24), hours(36));

    for (const Event& event : events.WithId(992614500)) {
        EXPECT_EQ(event.fields,
                  (EventFields{{"Product", "Board"}, {"String7", "Oem"}, {"Version", "Bios"}}));
    }
    for (const Event& event : events.WithId(992614518)) {
        ASSERT_EQ(event.fields.size(), 3u);
        EXPECT_EQ(event.fields[0], EventFields::value_type("mode", "OPEN_MODE"));
        EXPECT_EQ(event.fields[1], EventFields::value_type("status", "1"));
        // Whatever it is here: other programs may have left the component in this prefix.
        EXPECT_EQ(event.fields[2].first, "version");
    }
}

TEST_F(Week, CountsFromTheStampOfAnEarlierRun) {
    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
    const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
    // Another run sent the report, so that 47 hours are missing.
    const std::int64_t stamp = Clock::to_time_t(Clock::now() - hours(25));
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orbisuite\\DataReportTime",
                              L"BiosReportTime", REG_QWORD, &stamp, sizeof(stamp)),
              ERROR_SUCCESS);
    ASSERT_TRUE(plugin->Start());
    ASSERT_TRUE(timeline.WaitFor(kBiosEvent, 1, kPatience));
    ASSERT_TRUE(plugin->Stop());

    // They have passed at the fourth tick of twelve hours.
    EXPECT_EQ(TicksOf(kBiosEvent), std::vector<int>{4});
    std::int64_t newStamp = 0;
    DWORD size = sizeof(newStamp);
    ASSERT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Orbisuite\\DataReportTime",
                           L"BiosReportTime", RRF_RT_QWORD, nullptr, &newStamp, &size),
              ERROR_SUCCESS);
    EXPECT_GE(newStamp - stamp, 72 * 3600);
}

}  // namespace
