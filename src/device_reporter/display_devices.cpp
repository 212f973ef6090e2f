#include "device_reporter/display_devices.h"

#include <cstddef>
#include <string>

#include "device_reporter/device_text.h"
#include "device_reporter/display_info.h"

namespace DeviceReporter {

namespace {

/// For example "1920x1080@60Hz_EXTEND_I". The first path is taken for the internal monitor.
std::wstring DescribeMode(const DisplayInfo& display) {
    return std::to_wstring(display.width) + L"x" + std::to_wstring(display.height) + L"@" +
           std::to_wstring(display.refreshRate) + L"Hz_" + display.displayMode +
           (display.isFirstPath ? L"_I" : L"_E");
}

DeviceInfo MakeMonitorRecord(const DisplayInfo& display) {
    constexpr std::size_t kVendorPieceLength = 15;
    DeviceInfo record;
    record.instanceId = display.monitorDevicePath;
    record.name = display.monitorName;
    record.manufacturer = display.edidVendor;
    record.className = L"Monitor";
    record.description = DescribeMode(display);
    record.vendorId = CutPiece(display.monitorDevicePath, L"DISPLAY#", kVendorPieceLength);
    return record;
}

}  // namespace

bool AppendDisplayDevices(std::vector<DeviceInfo>& devices) {
    std::vector<DisplayInfo> displays;
    // Kept: after a failure, which is logged, the displays described by then are dropped.
    if (GetDisplayInfo(displays)) {
        for (const DisplayInfo& display : displays) {
            devices.push_back(MakeMonitorRecord(display));
        }
    }
    return true;
}

}  // namespace DeviceReporter
