#include "host/device_inventory/obstacles.h"

#include <set>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/report_device_info.h"
#include "host/device_inventory/device_inventory.h"

namespace device_inventory {
namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;

/// A vendor id or class that nothing speaks against.
constexpr wchar_t kFine[] = L"x";

/// Ids of the devices that the plug-in would report if `change` were made to every device.
template <class Change>
std::set<std::wstring> ReportedAfter(const DeviceMap& devices, Change change) {
    DeviceReporter::ReportDeviceInfo reporter;
    for (const auto& [id, device] : devices) {
        change(reporter.devices.emplace(id, device).first->second);
    }
    std::vector<DeviceInfo> hid;
    std::vector<DeviceInfo> bluetooth;
    std::vector<DeviceInfo> other;
    DeviceReporter::ClassifyDevices(reporter, hid, bluetooth, other);
    std::set<std::wstring> ids;
    for (const auto* list : {&hid, &bluetooth, &other}) {
        for (const DeviceInfo& device : *list) {
            ids.insert(device.instanceId);
        }
    }
    return ids;
}

}  // namespace

// The rules are the plug-in's and are not repeated here. It is asked again, with everything else
// about the devices put in order, whether it would report them.
std::map<std::wstring, unsigned> FindObstacles(const DeviceMap& devices) {
    const auto fineVendorId = ReportedAfter(devices, [](DeviceInfo& device) {
        device.className = kFine;
        device.isRemovable = true;
    });
    const auto fineClass = ReportedAfter(devices, [](DeviceInfo& device) {
        device.vendorId = kFine;
        device.isRemovable = true;
    });
    const auto fineContainer = ReportedAfter(devices, [](DeviceInfo& device) {
        device.vendorId = kFine;
        device.className = kFine;
    });
    std::map<std::wstring, unsigned> obstacles;
    for (const auto& [id, device] : devices) {
        unsigned& bits = obstacles[id];
        bits |= fineVendorId.count(id) == 0 ? unsigned{DEVICE_INVENTORY_VENDOR_ID} : 0U;
        bits |= fineClass.count(id) == 0 ? unsigned{DEVICE_INVENTORY_CLASS} : 0U;
        bits |= fineContainer.count(id) == 0 ? unsigned{DEVICE_INVENTORY_CONTAINER} : 0U;
    }
    return obstacles;
}

}  // namespace device_inventory
