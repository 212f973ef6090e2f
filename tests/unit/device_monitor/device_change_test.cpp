// What the monitor makes of device notifications.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "simulation/well_known.h"
#include "standins/consent_store/consent_store_control.h"
#include "unit/device_monitor/monitor_test.h"
#include "unit/device_monitor/running_monitor.h"

namespace {

using namespace device_monitor_test;
using Texts = std::vector<std::string>;

constexpr char kNullHeaderLine[] =
    "log 3 hdr is null(DeviceReporter::ReportDeviceInfo::OnDeviceChange)";
constexpr WPARAM kArrival = 0x8000;
constexpr WPARAM kRemoval = 0x8004;
/// Every other event code of device notifications.
constexpr WPARAM kOtherEvents[] = {0,      1,      7,      0x17,   0x18,   0x19,
                                   0x8001, 0x8002, 0x8003, 0x8005, 0x8006, 0xFFFF};

DEV_BROADCAST_DEVICEINTERFACE_W InterfaceHeader(const GUID& interfaceClass) {
    DEV_BROADCAST_DEVICEINTERFACE_W header{};
    header.dbcc_size = sizeof(header);
    header.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    header.dbcc_classguid = interfaceClass;
    return header;
}

simulation::Device DeviceWith(const std::wstring& instanceId, const GUID& interfaceClass) {
    simulation::Device device;
    device.instanceId = instanceId;
    device.interfaces.push_back({interfaceClass, L"\\\\?\\" + instanceId, std::nullopt});
    return device;
}

class DeviceChange : public MonitorTest {
protected:
    DeviceChange() {
        monitor.emplace(World(), reporter);
        EXPECT_TRUE(monitor->WaitsForMessages());
        Journal().Clear();
    }
    ~DeviceChange() override { monitor.reset(); }

    template <class Header>
    void Notify(WPARAM event, const Header& header) {
        monitor->Send(WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(&header));
    }

    void ExpectNothingHappened() {
        EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
        EXPECT_TRUE(Timeline().Texts().empty());
    }

    std::optional<RunningMonitor> monitor;
};

TEST_F(DeviceChange, OfAnArrivalAddsTheDevicesOfThatInterfaceClass) {
    World().Plug(DeviceWith(L"usb\\vid_1\\new", simulation::kUsbDeviceInterface));
    World().Plug(DeviceWith(L"OTHER\\1", simulation::kDiskInterface));
    Notify(kArrival, InterfaceHeader(simulation::kUsbDeviceInterface));
    EXPECT_EQ(reporter.devices.size(), 1u);
    EXPECT_EQ(reporter.devices.count(L"USB\\VID_1\\NEW"), 1u);
    const auto fills = Journal().Calls("SetupDiGetClassDevsW");
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0]["classGuid"], "{A5DCBF10-6530-11D2-901F-00C04FB951ED}");
    EXPECT_EQ(fills[0]["flags"], "18");
    EXPECT_EQ(fills[0].threadId, monitor->ThreadId());
}

TEST_F(DeviceChange, OfAnArrivalWorksForEveryInterfaceClass) {
    const GUID unheardOf{0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
    const std::pair<GUID, const char*> classes[] = {
        {simulation::kHidInterface, "{4D1E55B2-F16F-11CF-88CB-001111000030}"},
        {simulation::kMonitorInterface, "{E6F07B5F-EE97-4A90-B076-33F57BF4EAA7}"},
        {simulation::kDiskInterface, "{53F56307-B6BF-11D0-94F2-00A0C91EFB8B}"},
        {unheardOf, "{12345678-9ABC-DEF0-0102-030405060708}"},
        {GUID{}, "{00000000-0000-0000-0000-000000000000}"},
    };
    for (const auto& [interfaceClass, text] : classes) {
        Journal().Clear();
        Notify(kArrival, InterfaceHeader(interfaceClass));
        const auto fills = Journal().Calls("SetupDiGetClassDevsW");
        ASSERT_EQ(fills.size(), 1u);
        EXPECT_EQ(fills[0]["classGuid"], text);
    }
}

TEST_F(DeviceChange, OfARemovalKeepsTheDevice) {
    World().Plug(DeviceWith(L"USB\\1", simulation::kUsbDeviceInterface));
    Notify(kArrival, InterfaceHeader(simulation::kUsbDeviceInterface));
    ASSERT_TRUE(World().Unplug(L"USB\\1"));
    Journal().Clear();
    Notify(kRemoval, InterfaceHeader(simulation::kUsbDeviceInterface));
    ExpectNothingHappened();
    EXPECT_EQ(reporter.devices.count(L"USB\\1"), 1u);
}

TEST_F(DeviceChange, WithoutHeaderIsLoggedForArrivalAndRemoval) {
    monitor->Send(WM_DEVICECHANGE, kArrival, 0);
    monitor->Send(WM_DEVICECHANGE, kRemoval, 0);
    EXPECT_EQ(Timeline().Texts(), (Texts{kNullHeaderLine, kNullHeaderLine}));
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
}

TEST_F(DeviceChange, OfAnyOtherKindIsIgnoredWithAndWithoutHeader) {
    for (const WPARAM event : kOtherEvents) {
        monitor->Send(WM_DEVICECHANGE, event, 0);
        Notify(event, InterfaceHeader(simulation::kUsbDeviceInterface));
    }
    ExpectNothingHappened();
}

TEST_F(DeviceChange, OfAnythingButADeviceInterfaceIsIgnored) {
    // OEM, device node, volume, port, network and handle.
    for (const DWORD deviceType : {0, 1, 2, 3, 4, 6, 7}) {
        auto header = InterfaceHeader(simulation::kUsbDeviceInterface);
        header.dbcc_devicetype = deviceType;
        Notify(kArrival, header);
        Notify(kRemoval, header);
    }
    ExpectNothingHappened();
}

TEST_F(DeviceChange, NeverSendsAReport) {
    MakeDue(0);
    World().Plug(DeviceWith(L"USB\\1", simulation::kUsbDeviceInterface));
    Notify(kArrival, InterfaceHeader(simulation::kUsbDeviceInterface));
    Notify(kRemoval, InterfaceHeader(simulation::kUsbDeviceInterface));
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    EXPECT_TRUE(Timeline().Texts().empty());
    EXPECT_EQ(reporter.reportCount, 0);
}

TEST_F(DeviceChange, OfAnArrivalKeepsTheFirstRecordOfAKnownDevice) {
    simulation::Device device = DeviceWith(L"USB\\1", simulation::kUsbDeviceInterface);
    device.properties.push_back(
        simulation::DeviceProperty::String(simulation::kDeviceDescKey, L"first"));
    World().Plug(device);
    Notify(kArrival, InterfaceHeader(simulation::kUsbDeviceInterface));
    World().Unplug(L"USB\\1");
    device.properties.front() =
        simulation::DeviceProperty::String(simulation::kDeviceDescKey, L"second");
    World().Plug(device);
    Notify(kArrival, InterfaceHeader(simulation::kUsbDeviceInterface));
    EXPECT_EQ(reporter.devices.at(L"USB\\1").description, L"first");
}

}  // namespace
