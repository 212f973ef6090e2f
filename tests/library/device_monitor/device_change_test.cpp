// Devices that come and go while the monitor listens.
#include <dbt.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/device_happenings.h"
#include "simulation/well_known.h"
#include "standins/consent_store/consent_store_control.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;
using simulation::Delivery;
using Texts = std::vector<std::string>;

constexpr char kNullHeaderLine[] =
    "log 3 hdr is null(DeviceReporter::ReportDeviceInfo::OnDeviceChange)";
constexpr WPARAM kArrival = 0x8000;
constexpr WPARAM kRemoval = 0x8004;
constexpr DWORD kDeviceInterface = 5;

class DeviceChange : public MonitoredPlugin {
protected:
    /// Back when the window has dealt with it.
    static void Notify(WPARAM event, const void* header) {
        SendMessageW(test_support::FindMonitorWindow(), WM_DEVICECHANGE, event,
                     reinterpret_cast<LPARAM>(header));
    }
    static void Notify(WPARAM event, DWORD deviceType, const GUID& interfaceClass) {
        DEV_BROADCAST_DEVICEINTERFACE_W header{};
        header.dbcc_size = sizeof(header);
        header.dbcc_devicetype = deviceType;
        header.dbcc_classguid = interfaceClass;
        Notify(event, &header);
    }

    /// Whether the latest list names the device.
    bool IsInLatestList(const std::string& vendorId) {
        const auto events = suite.events.WithId(kListEventId);
        return !events.empty() &&
               events.back().fields.at(0).second.find(vendorId) != std::string::npos;
    }
};

TEST_F(DeviceChange, OfAnArrivalAsksForTheDevicesOfThatInterfaceClassWhateverItIs) {
    Start();
    for (const auto& [interfaceClass, text] :
         {std::pair(simulation::kUsbDeviceInterface, "{A5DCBF10-6530-11D2-901F-00C04FB951ED}"),
          std::pair(simulation::kHidInterface, "{4D1E55B2-F16F-11CF-88CB-001111000030}"),
          std::pair(GUID{0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}},
                    "{12345678-9ABC-DEF0-0102-030405060708}"),
          std::pair(GUID{}, "{00000000-0000-0000-0000-000000000000}")}) {
        Journal().Clear();
        Notify(kArrival, kDeviceInterface, interfaceClass);
        const auto fills = Journal().Calls("SetupDiGetClassDevsW");
        ASSERT_EQ(fills.size(), 1u);
        EXPECT_EQ(fills[0]["classGuid"], text);
        EXPECT_EQ(fills[0]["flags"], "18");
    }
}

TEST_F(DeviceChange, WithoutHeaderIsLoggedForArrivalAndRemovalOnly) {
    Start();
    Journal().Clear();
    Timeline().Clear();
    for (const WPARAM event : {0, 7, 0x7FFF, 0x8001, 0x8003, 0x8005, 0xFFFF}) {
        Notify(event, nullptr);
    }
    EXPECT_EQ(Timeline().Texts(), Texts{});
    Notify(kArrival, nullptr);
    Notify(kRemoval, nullptr);
    EXPECT_EQ(Timeline().Texts(), (Texts{kNullHeaderLine, kNullHeaderLine}));
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
}

TEST_F(DeviceChange, OfAnyOtherKindOrOfAnythingButADeviceInterfaceIsIgnored) {
    Start();
    Journal().Clear();
    Timeline().Clear();
    for (const WPARAM event : {WPARAM{7}, WPARAM{0x8001}, kRemoval, WPARAM{0x8005}}) {
        Notify(event, kDeviceInterface, simulation::kUsbDeviceInterface);
    }
    // OEM, device node, volume, port, network and handle.
    for (const DWORD deviceType : {0, 1, 2, 3, 4, 6}) {
        Notify(kArrival, deviceType, simulation::kUsbDeviceInterface);
    }
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
    EXPECT_EQ(Timeline().Texts(), Texts{});
}

TEST_F(DeviceChange, PutsADeviceIntoTheNextListsAlsoAfterItHasGoneAndBringsNoListForward) {
    constexpr wchar_t kId[] = L"usb\\vid_1234&pid_5678\\2";
    Start();
    PassHours(12);
    EXPECT_EQ(PlugDevice(World(), UsbDevice(kId, false)), Delivery::Delivered);
    EXPECT_EQ(UnplugDevice(World(), kId), Delivery::Delivered);
    PassHours(11);
    EXPECT_EQ(Timeline().Count(kListLine), 0u);
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    PassHours(1);
    EXPECT_TRUE(IsInLatestList("VID_1234&PID_5678"));
    PassHours(24);
    EXPECT_EQ(Timeline().Count(kListLine), 2u);
    EXPECT_TRUE(IsInLatestList("VID_1234&PID_5678"));
}

TEST_F(DeviceChange, ThatIsNotAnnouncedIsNotListed) {
    Start();
    World().Plug(UsbDevice(L"usb\\vid_1234&pid_5678\\2", false));
    PassHours(24);
    EXPECT_EQ(Timeline().Count(kListLine), 1u);
    EXPECT_FALSE(IsInLatestList("VID_1234&PID_5678"));
}

}  // namespace
