// Devices that come and go between two lists.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/device_happenings.h"

namespace {

using namespace device_monitor_test;
using simulation::Delivery;

constexpr wchar_t kNewId[] = L"usb\\vid_1234&pid_5678\\2";

class ArrivingDevice : public MonitoredPlugin {
protected:
    /// Whether the latest list names the device.
    bool IsInLatestList() {
        const auto events = suite.events.WithId(kListEventId);
        return !events.empty() &&
               events.back().fields.at(0).second.find("VID_1234&PID_5678") != std::string::npos;
    }
};

TEST_F(ArrivingDevice, IsInTheNextList) {
    Start();
    PassHours(24);
    EXPECT_FALSE(IsInLatestList());
    EXPECT_EQ(PlugDevice(World(), UsbDevice(kNewId, false)), Delivery::Delivered);
    PassHours(24);
    EXPECT_TRUE(IsInLatestList());
}

TEST_F(ArrivingDevice, IsListedAlsoAfterItHasGone) {
    Start();
    EXPECT_EQ(PlugDevice(World(), UsbDevice(kNewId, false)), Delivery::Delivered);
    EXPECT_EQ(UnplugDevice(World(), kNewId), Delivery::Delivered);
    PassHours(24);
    EXPECT_TRUE(IsInLatestList());
    PassHours(24);
    EXPECT_TRUE(IsInLatestList());
}

TEST_F(ArrivingDevice, ThatIsNotAnnouncedIsNotListed) {
    Start();
    World().Plug(UsbDevice(kNewId, false));
    PassHours(24);
    EXPECT_FALSE(IsInLatestList());
}

TEST_F(ArrivingDevice, DoesNotBringTheListForward) {
    Start();
    PassHours(12);
    EXPECT_EQ(PlugDevice(World(), UsbDevice(kNewId, false)), Delivery::Delivered);
    EXPECT_EQ(Timeline().Count(kListLine), 0u);
    PassHours(11);
    EXPECT_EQ(Timeline().Count(kListLine), 0u);
    PassHours(1);
    EXPECT_TRUE(IsInLatestList());
}

}  // namespace
