// Monitors as device records.
#include "device_reporter/display_devices.h"

#include <string>
#include <vector>

#include "support/grouping_locale.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ImportOverride;
using device_tests::SampleDisplay;
using DeviceReporter::AppendDisplayDevices;
using DeviceReporter::DeviceInfo;

class DisplayDevices : public device_tests::MachineTest {
protected:
    DisplayDevices() { machine.display.paths = {SampleDisplay(1)}; }

    /// The vendor id of a monitor with this device path.
    std::wstring VendorIdOf(const std::wstring& devicePath) {
        devices.clear();
        machine.display.paths[0].devicePath = devicePath;
        EXPECT_TRUE(AppendDisplayDevices(devices));
        return devices.at(0).vendorId;
    }

    std::vector<DeviceInfo> devices;
};

TEST_F(DisplayDevices, AreRecordsOfMonitors) {
    machine.display.paths[0].mode = simulation::DisplayMode{3840, 2160, 60, 96, 32};
    EXPECT_TRUE(AppendDisplayDevices(devices));
    ASSERT_EQ(devices.size(), 1u);
    const DeviceInfo& monitor = devices[0];
    EXPECT_FALSE(monitor.isRemovable);
    EXPECT_EQ(monitor.instanceId,
              L"\\\\?\\DISPLAY#DEL0001#5&2a3b4c&0&UID4351#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}");
    EXPECT_EQ(monitor.parent, L"");
    EXPECT_EQ(monitor.name, L"Monitor 1");
    EXPECT_EQ(monitor.manufacturer, L"DEL#");
    EXPECT_EQ(monitor.className, L"Monitor");
    EXPECT_EQ(monitor.description, L"3840x2160@60Hz_INTERNAL_I");
    EXPECT_EQ(monitor.vendorId, L"DISPLAY#DEL0001");
    EXPECT_EQ(monitor.containerId, L"");
}

TEST_F(DisplayDevices, TellTheInternalMonitorFromTheExternalOnes) {
    machine.display.topology = 4;
    machine.display.paths = {SampleDisplay(1), SampleDisplay(2), SampleDisplay(3)};
    EXPECT_TRUE(AppendDisplayDevices(devices));
    ASSERT_EQ(devices.size(), 3u);
    EXPECT_EQ(devices[0].description, L"1920x1080@60Hz_EXTEND_I");
    EXPECT_EQ(devices[1].description, L"1920x1080@60Hz_EXTEND_E");
    EXPECT_EQ(devices[2].description, L"1920x1080@60Hz_EXTEND_E");
    EXPECT_EQ(devices[2].name, L"Monitor 3");
}

TEST_F(DisplayDevices, HaveNumbersWithoutPaddingOrGroups) {
    const test_support::GroupingLocale grouping;
    machine.display.paths[0].mode = simulation::DisplayMode{65'535, 7, 0, 96, 32};
    EXPECT_TRUE(AppendDisplayDevices(devices));
    EXPECT_EQ(devices.at(0).description, L"65535x7@0Hz_INTERNAL_I");
}

TEST_F(DisplayDevices, AreAppendedOrDroppedAllWhenOnePathFails) {
    devices.resize(1);
    devices[0].name = L"before";
    EXPECT_TRUE(AppendDisplayDevices(devices));
    ASSERT_EQ(devices.size(), 2u);
    EXPECT_EQ(devices[0].name, L"before");
    EXPECT_EQ(devices[1].name, L"Monitor 1");
    machine.display.paths.push_back(SampleDisplay(2));
    machine.display.paths[1].edid.reset();
    EXPECT_TRUE(AppendDisplayDevices(devices));
    EXPECT_EQ(devices.size(), 2u);
}

TEST_F(DisplayDevices, HaveTheVendorIdAtTheFirstMarkerWhereThePathGoesOnBehindIt) {
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAY#A#B#CD"), L"");
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAY#A#B#CDE"), L"");
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAY#A#B#CDEF"), L"DISPLAY#A#B#CDE");
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAY#DEL0001#DISPLAY#DEL0002#5"), L"DISPLAY#DEL0001");
}

LSTATUS WINAPI OpenKeyOfMonitor2(HKEY root, const char*, DWORD options, REGSAM access, HKEY* key) {
    return ImportOverride<decltype(::RegOpenKeyExA)>::Next()(
        root,
        "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\DEL0002\\5&2a3b4c&0&UID4352"
        "\\Device Parameters",
        options, access, key);
}

TEST_F(DisplayDevices, HaveNoVendorIdWhereTheMarkerLacksItsNumberSign) {
    // Below other keys than those of monitors, of which the machine knows nothing.
    const ImportOverride<decltype(::RegOpenKeyExA)> handMade("RegOpenKeyExA", OpenKeyOfMonitor2);
    machine.display.paths.push_back(SampleDisplay(2));
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAYS#DEL0001#5&2a3b4c#0#"), L"");
    EXPECT_EQ(VendorIdOf(L"\\\\?\\DISPLAY\\VID_046D&PID_C52B#0#1#2"), L"");
}

}  // namespace
