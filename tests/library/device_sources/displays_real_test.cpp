// The monitors on the real display configuration and registry.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "device_reporter/display_devices.h"
#include "device_reporter/display_info.h"
#include "device_reporter/edid_registry.h"
#include "library/device_sources/registered_devices.h"
#include "library/device_sources/stored_edid.h"
#include "support/real_devices.h"
#include "support/recorded_log.h"

namespace {

using DeviceReporter::DeviceInfo;
using testing::Contains;
using testing::IsEmpty;

/// A monitor of the desktop, found by its adapter's name and not by the display configuration.
struct DesktopMonitor {
    std::wstring devicePath;
    std::wstring instanceId;
    DEVMODEW mode{};
};

/// By the name of the adapter: "\\.\DISPLAY1".
std::map<std::wstring, DesktopMonitor> DesktopMonitors() {
    std::map<std::wstring, DesktopMonitor> monitors;
    DISPLAY_DEVICEW adapter{};
    adapter.cb = sizeof(adapter);
    for (DWORD i = 0; EnumDisplayDevicesW(nullptr, i, &adapter, 0); ++i) {
        DISPLAY_DEVICEW monitor{};
        monitor.cb = sizeof(monitor);
        if ((adapter.StateFlags & DISPLAY_DEVICE_ATTACHED_TO_DESKTOP) == 0 ||
            !EnumDisplayDevicesW(adapter.DeviceName, 0, &monitor, EDD_GET_DEVICE_INTERFACE_NAME)) {
            continue;
        }
        DesktopMonitor found;
        found.devicePath = monitor.DeviceID;
        const std::size_t idEnd = found.devicePath.rfind(L'#');
        found.instanceId = found.devicePath.substr(4, idEnd - 4);
        for (wchar_t& unit : found.instanceId) {
            unit = unit == L'#' ? L'\\' : unit;
        }
        found.mode.dmSize = sizeof(found.mode);
        EnumDisplaySettingsExW(adapter.DeviceName, ENUM_CURRENT_SETTINGS, &found.mode, 0);
        monitors.emplace(adapter.DeviceName, found);
    }
    return monitors;
}

std::vector<BYTE> EdidOf(const char (&manufacturer)[3]) {
    std::vector<BYTE> edid(128, 0x5A);
    edid[8] = static_cast<BYTE>(manufacturer[0]);
    edid[9] = static_cast<BYTE>(manufacturer[1]);
    return edid;
}

class RealDisplays : public testing::Test {
protected:
    void SetUp() override {
        if (!real_devices::RunsInWine()) {
            GTEST_SKIP() << real_devices::kOnlyInWine;
        }
        test_support::WaitForRealDevices();
        monitors = DesktopMonitors();
        if (monitors.size() != 1) {
            GTEST_SKIP() << "expects one monitor, as Wine has without a window system";
        }
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    std::map<std::wstring, DesktopMonitor> monitors;
};

TEST_F(RealDisplays, AreTheMonitorsOfTheDesktop) {
    const auto& [adapter, monitor] = *monitors.begin();
    const real_devices::StoredEdid stored(monitor.instanceId, EdidOf("\x10\xAC"));

    std::vector<DeviceReporter::DisplayInfo> displays;
    EXPECT_TRUE(DeviceReporter::GetDisplayInfo(displays));
    ASSERT_EQ(displays.size(), 1u);
    EXPECT_EQ(displays[0].sourceName, adapter);
    EXPECT_EQ(displays[0].monitorDevicePath, monitor.devicePath);
    EXPECT_EQ(displays[0].width, monitor.mode.dmPelsWidth);
    EXPECT_EQ(displays[0].height, monitor.mode.dmPelsHeight);
    EXPECT_EQ(displays[0].refreshRate, monitor.mode.dmDisplayFrequency);
    EXPECT_EQ(displays[0].colorDepth, monitor.mode.dmBitsPerPel / 4);
    EXPECT_EQ(displays[0].edidHex.substr(0, 32), L"5A5A5A5A5A5A5A5A10AC5A5A00005A5A");

    std::vector<DeviceInfo> devices;
    EXPECT_TRUE(DeviceReporter::AppendDisplayDevices(devices));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices[0].instanceId, monitor.devicePath);
    EXPECT_EQ(devices[0].name, displays[0].monitorName);
    EXPECT_EQ(devices[0].manufacturer, L"DEL#");
    EXPECT_EQ(devices[0].className, L"Monitor");
    EXPECT_EQ(devices[0].description, std::to_wstring(monitor.mode.dmPelsWidth) + L"x" +
                                          std::to_wstring(monitor.mode.dmPelsHeight) + L"@" +
                                          std::to_wstring(monitor.mode.dmDisplayFrequency) +
                                          L"Hz_INTERNAL_I");
    EXPECT_EQ(devices[0].vendorId, monitor.devicePath.substr(4, 15));
    EXPECT_THAT(timeline.Texts(), IsEmpty());
}

TEST_F(RealDisplays, AreNoneWhenAMonitorHasNoUsableEdid) {
    const real_devices::StoredEdid stored(monitors.begin()->second.instanceId, EdidOf("\0\0"));
    std::vector<DeviceInfo> devices;
    EXPECT_TRUE(DeviceReporter::AppendDisplayDevices(devices));
    EXPECT_EQ(devices.size(), 0u);
    EXPECT_THAT(timeline.Texts(), Contains("log 3 Vendor data out of boundary"
                                           "(`anonymous-namespace'::ParseEdidVendor)"));
}

TEST_F(RealDisplays, HaveTheirEdidReadWholeFromTheRegistry) {
    const DesktopMonitor& monitor = monitors.begin()->second;
    const std::wstring path = DeviceReporter::GetEditRegPath(monitor.devicePath);
    EXPECT_EQ(path,
              L"SYSTEM\\CurrentControlSet\\Enum\\" + monitor.instanceId + L"\\Device Parameters");
    for (std::size_t size : {1u, 128u, 256u, 32'768u}) {
        std::vector<BYTE> bytes(size);
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<BYTE>(i * 7 + 1);
        }
        const real_devices::StoredEdid stored(monitor.instanceId, bytes);
        std::string edid;
        EXPECT_TRUE(DeviceReporter::GetValueFromReg(path, edid));
        EXPECT_EQ(edid, std::string(bytes.begin(), bytes.end()));
    }
    const real_devices::StoredEdid stored(monitor.instanceId, {});
    std::string edid;
    EXPECT_FALSE(DeviceReporter::GetValueFromReg(path, edid));
    EXPECT_THAT(timeline.Texts(),
                Contains("log 3 RegQuery max Edid value length Failed, maxValueLength is 0"
                         "(`anonymous-namespace'::GetValueFromReg)"));
}

}  // namespace
