// A wall clock that is set or slewed while the timer loop waits.
#include <gtest/gtest.h>

#include <chrono>

#include "library/device_monitor/monitored_plugin.h"

namespace {

using namespace device_monitor_test;
using namespace std::chrono_literals;

class WallClock : public MonitoredPlugin {
protected:
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

TEST_F(WallClock, ThatIsSetAheadMakesNoHourOfAStop) {
    Start();
    hours.SetWallClockAhead(2h);
    Stop();
    // The one that closes the window.
    EXPECT_EQ(Requests(), 1u);
}

}  // namespace
