// Reporters with devices to classify.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/report_device_info.h"

namespace device_list_test {

inline constexpr wchar_t kSharedContainer[] = L"{11111111-0000-0000-0000-000000000001}";
inline constexpr wchar_t kOtherContainer[] = L"{22222222-0000-0000-0000-000000000002}";

/// A device that is listed as soon as a removable device shares its container.
inline DeviceReporter::DeviceInfo ListedDevice(const std::wstring& instanceId) {
    DeviceReporter::DeviceInfo device;
    device.instanceId = instanceId;
    device.className = L"Mouse";
    device.vendorId = L"VID_1";
    device.containerId = kSharedContainer;
    return device;
}

/// Makes kSharedContainer the container of a removable device without being listed itself.
inline DeviceReporter::DeviceInfo RemovableDevice() {
    DeviceReporter::DeviceInfo device;
    device.instanceId = L"SWD\\REMOVABLE";
    device.isRemovable = true;
    device.containerId = kSharedContainer;
    return device;
}

/// The instance ids in the three lists.
struct Classified {
    std::vector<std::wstring> hid;
    std::vector<std::wstring> bluetooth;
    std::vector<std::wstring> other;
};

inline bool operator==(const Classified& left, const Classified& right) {
    return left.hid == right.hid && left.bluetooth == right.bluetooth && left.other == right.other;
}

/// A reporter of the test's own.
class DeviceMapOfTest {
public:
    void Add(const DeviceReporter::DeviceInfo& device) {
        reporter.devices[device.instanceId] = device;
    }

    Classified Classify() const {
        std::vector<DeviceReporter::DeviceInfo> lists[3];
        DeviceReporter::ClassifyDevices(reporter, lists[0], lists[1], lists[2]);
        return {IdsOf(lists[0]), IdsOf(lists[1]), IdsOf(lists[2])};
    }

    DeviceReporter::ReportDeviceInfo reporter;

private:
    static std::vector<std::wstring> IdsOf(const std::vector<DeviceReporter::DeviceInfo>& list) {
        std::vector<std::wstring> ids;
        for (const DeviceReporter::DeviceInfo& device : list) {
            ids.push_back(device.instanceId);
        }
        return ids;
    }
};

}  // namespace device_list_test
