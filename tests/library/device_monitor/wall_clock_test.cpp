// Clocks that are set, slewed or go on while the machine sleeps, as the timer loop waits.
#include <windows.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

#include "library/device_monitor/monitored_plugin.h"

namespace {

using namespace device_monitor_test;
using namespace std::chrono_literals;

class WallClock : public MonitoredPlugin {
protected:
    /// One for each hour that the loop took for passed, and one of Stop to close the window.
    std::size_t Requests() { return Journal().Count("PostMessageW"); }
};

TEST_F(WallClock, ThatIsSlewedBackLosesNoHour) {
    Start();
    ASSERT_TRUE(hours.PassTick(1h - 5s));
    ASSERT_TRUE(hours.PassTick(1h - 5s));
    EXPECT_EQ(Requests(), 2u);
}

TEST_F(WallClock, ThatIsSetBackLosesNoHour) {
    Start();
    ASSERT_TRUE(hours.PassTick(-2h));
    EXPECT_EQ(Requests(), 1u);
}

TEST_F(WallClock, ThatIsSetAheadMakesAnHourOfAWakeForNothing) {
    Start();
    ASSERT_TRUE(hours.PassTick(2h, 1min));
    EXPECT_EQ(Requests(), 1u);
}

TEST_F(WallClock, ThatIsSetAheadMakesNoHourOfAStop) {
    Start();
    hours.MoveClocks(2h, 0s);
    Stop();
    EXPECT_EQ(Requests(), 1u);
}

TEST_F(WallClock, ThatWentOnWithTheOtherInASleepMakesNoHourOfAStop) {
    Start();
    hours.MoveClocks(2h, 2h);
    Stop();
    EXPECT_EQ(Requests(), 1u);
}

TEST_F(WallClock, MakesAnHourOfAWakeForNothingInItsLastSecondsOnly) {
    Start();
    ASSERT_TRUE(hours.PassTick(1min, 1min));
    ASSERT_TRUE(hours.PassTick(1h - 11s, 1h - 11s));
    EXPECT_EQ(Requests(), 0u);
    ASSERT_TRUE(hours.PassTick(1h - 5s, 1h - 5s));
    EXPECT_EQ(Requests(), 1u);
}

TEST_F(WallClock, ThatIsSetBackDoesNotTakeTheLastHourFromAStopBeforeTheWait) {
    Start();
    std::atomic<DWORD> stoppingThread{0};
    std::optional<std::thread> stop;
    // The loop writes its line between looking for a Stop and waiting.
    suite.log.onLine = [&](const test_support::LogLine&) {
        if (!stop) {
            stop.emplace([&] {
                stoppingThread = GetCurrentThreadId();
                Stop();
            });
            EXPECT_TRUE(ComesTrue(
                [&] { return stoppingThread != 0 && hours.WaitsWithoutLimit(stoppingThread); }));
        }
    };
    ASSERT_TRUE(hours.PassTick());
    hours.EndWait(-2h, 1h);
    stop->join();
    EXPECT_EQ(Requests(), 3u);
}

}  // namespace
