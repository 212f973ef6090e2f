#include "device_reporter/device_classification.h"

#include <set>
#include <string>

#include "device_reporter/report_device_info.h"

namespace DeviceReporter {

namespace {

std::set<std::wstring> CollectRemovableContainers(const DeviceMap& devices) {
    std::set<std::wstring> containerIds;
    for (const auto& [instanceId, device] : devices) {
        if (device.isRemovable) {
            containerIds.insert(device.containerId);
        }
    }
    return containerIds;
}

bool IsReported(const DeviceInfo& device, const std::set<std::wstring>& removableContainers) {
    return !device.vendorId.empty() && removableContainers.count(device.containerId) != 0 &&
           !device.className.empty() && device.className.find(L"System") == std::wstring::npos;
}

bool StartsWith(const std::wstring& text, const std::wstring& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

void ClassifyDevices(const ReportDeviceInfo& reporter, std::vector<DeviceInfo>& hidDevices,
                     std::vector<DeviceInfo>& bluetoothDevices,
                     std::vector<DeviceInfo>& otherDevices) {
    const std::set<std::wstring> removableContainers = CollectRemovableContainers(reporter.devices);
    for (const auto& [instanceId, device] : reporter.devices) {
        if (!IsReported(device, removableContainers)) {
            continue;
        }
        if (StartsWith(device.instanceId, L"HID")) {
            hidDevices.push_back(device);
        } else if (StartsWith(device.instanceId, L"BTH")) {
            bluetoothDevices.push_back(device);
        } else {
            otherDevices.push_back(device);
        }
    }
}

}  // namespace DeviceReporter
