#include "device_inventory/device_inventory.h"

#include <exception>
#include <map>
#include <string>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/device_enumeration.h"
#include "device_reporter/display_devices.h"
#include "device_reporter/printer_info.h"
#include "device_reporter/report_device_info.h"

namespace device_inventory {
namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using DeviceReporter::ReportDeviceInfo;

/// A vendor id or class that nothing speaks against.
constexpr wchar_t kFine[] = L"x";

/// The list of each reported device, by its id.
std::map<std::wstring, List> Classify(const ReportDeviceInfo& reporter) {
    std::vector<DeviceInfo> hid;
    std::vector<DeviceInfo> bluetooth;
    std::vector<DeviceInfo> other;
    DeviceReporter::ClassifyDevices(reporter, hid, bluetooth, other);
    std::map<std::wstring, List> lists;
    const auto note = [&](const std::vector<DeviceInfo>& devices, List list) {
        for (const DeviceInfo& device : devices) {
            lists.emplace(device.instanceId, list);
        }
    };
    note(hid, List::Hid);
    note(bluetooth, List::Bluetooth);
    note(other, List::Other);
    return lists;
}

/// For each device, by its id, everything that by itself would keep it out of the lists. The rules
/// are the plug-in's and are not repeated here: it classifies the devices again, with everything
/// but one obstacle out of the way.
std::map<std::wstring, unsigned> FindObstacles(const DeviceMap& devices) {
    std::map<std::wstring, unsigned> found;
    for (const Obstacle obstacle : {kVendorId, kClass, kContainer}) {
        ReportDeviceInfo reporter;
        reporter.devices = devices;
        for (auto& [id, device] : reporter.devices) {
            if (obstacle != kVendorId) {
                device.vendorId = kFine;
            }
            if (obstacle != kClass) {
                device.className = kFine;
            }
            device.isRemovable = device.isRemovable || obstacle != kContainer;
        }
        const std::map<std::wstring, List> reported = Classify(reporter);
        for (const auto& [id, device] : devices) {
            found[id] |= reported.count(id) == 0 ? unsigned{obstacle} : 0U;
        }
    }
    return found;
}

void Read(Sink sink, void* context) {
    ReportDeviceInfo reporter;
    DeviceReporter::FillDeviceMap(reporter.devices);
    const std::vector<DeviceInfo> printers = DeviceReporter::ListPrinters();
    std::vector<DeviceInfo> displays;
    DeviceReporter::AppendDisplayDevices(displays);

    const std::map<std::wstring, List> lists = Classify(reporter);
    const std::map<std::wstring, unsigned> obstacles = FindObstacles(reporter.devices);
    for (const auto& [id, device] : reporter.devices) {
        const auto list = lists.find(id);
        if (list != lists.end()) {
            sink(context, list->second, /*obstacles=*/0, device);
        } else {
            sink(context, List::Unreported, obstacles.at(id), device);
        }
    }
    for (const DeviceInfo& printer : printers) {
        sink(context, List::Printer, /*obstacles=*/0, printer);
    }
    for (const DeviceInfo& display : displays) {
        sink(context, List::Display, /*obstacles=*/0, display);
    }
}

}  // namespace
}  // namespace device_inventory

const char* DeviceInventory_Read(device_inventory::Sink sink, void* context) {
    static std::string failure;
    try {
        device_inventory::Read(sink, context);
        return nullptr;
    } catch (const std::exception& error) {
        // An EDID may be too short to be decoded; the plug-in lets that end the process.
        failure = error.what();
        return failure.c_str();
    }
}
