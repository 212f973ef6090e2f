#include "host/device_inventory/device_inventory.h"

#include <windows.h>

#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/device_enumeration.h"
#include "device_reporter/display_devices.h"
#include "device_reporter/printer_info.h"
#include "device_reporter/report_device_info.h"
#include "host/device_inventory/obstacles.h"
#include "simulation/well_known.h"

namespace device_inventory {
namespace {

using DeviceReporter::DeviceInfo;

/// As the device monitor fills its map when it starts.
void FillDeviceMap(DeviceReporter::DeviceMap& devices) {
    DeviceReporter::AddDeviceInterfaceToMap(simulation::kHidInterface, devices);
    DeviceReporter::AddAllDevicesToMap(devices);
}

std::vector<DeviceInfo> ListPrinters() {
    std::vector<DeviceInfo> printers;
    std::unique_ptr<BYTE[]> printerInfoList;
    DWORD count = 0;
    if (DeviceReporter::EnumPrinterList(printerInfoList, count)) {
        DeviceReporter::ParsePrinters(printerInfoList.get(), count, printers);
    }
    return printers;
}

std::vector<DeviceInfo> ListDisplays() {
    std::vector<DeviceInfo> displays;
    DeviceReporter::AppendDisplayDevices(displays);
    return displays;
}

/// The list of each reported device, by its id.
std::map<std::wstring, DeviceInventoryList> Classify(
    const DeviceReporter::ReportDeviceInfo& reporter) {
    std::vector<DeviceInfo> hid;
    std::vector<DeviceInfo> bluetooth;
    std::vector<DeviceInfo> other;
    DeviceReporter::ClassifyDevices(reporter, hid, bluetooth, other);
    std::map<std::wstring, DeviceInventoryList> lists;
    const auto note = [&](const std::vector<DeviceInfo>& devices, DeviceInventoryList list) {
        for (const DeviceInfo& device : devices) {
            lists.emplace(device.instanceId, list);
        }
    };
    note(hid, DEVICE_INVENTORY_HID);
    note(bluetooth, DEVICE_INVENTORY_BLUETOOTH);
    note(other, DEVICE_INVENTORY_OTHER);
    return lists;
}

DeviceInventoryRecord RecordOf(const DeviceInfo& device, DeviceInventoryList list,
                               unsigned obstacles) {
    DeviceInventoryRecord record{};
    record.list = list;
    record.obstacles = obstacles;
    record.isRemovable = device.isRemovable ? 1 : 0;
    record.instanceId = device.instanceId.c_str();
    record.name = device.name.c_str();
    record.manufacturer = device.manufacturer.c_str();
    record.className = device.className.c_str();
    record.description = device.description.c_str();
    record.vendorId = device.vendorId.c_str();
    record.containerId = device.containerId.c_str();
    return record;
}

void Read(DeviceInventorySink sink, void* context) {
    DeviceReporter::ReportDeviceInfo reporter;
    FillDeviceMap(reporter.devices);
    const std::vector<DeviceInfo> printers = ListPrinters();
    const std::vector<DeviceInfo> displays = ListDisplays();

    const auto give = [&](const DeviceInfo& device, DeviceInventoryList list, unsigned obstacles) {
        const DeviceInventoryRecord record = RecordOf(device, list, obstacles);
        sink(context, &record);
    };
    const std::map<std::wstring, DeviceInventoryList> lists = Classify(reporter);
    const std::map<std::wstring, unsigned> obstacles = FindObstacles(reporter.devices);
    for (const auto& [id, device] : reporter.devices) {
        const auto list = lists.find(id);
        if (list != lists.end()) {
            give(device, list->second, /*obstacles=*/0);
        } else {
            give(device, DEVICE_INVENTORY_UNREPORTED, obstacles.at(id));
        }
    }
    for (const DeviceInfo& printer : printers) {
        give(printer, DEVICE_INVENTORY_PRINTER, /*obstacles=*/0);
    }
    for (const DeviceInfo& display : displays) {
        give(display, DEVICE_INVENTORY_DISPLAY, /*obstacles=*/0);
    }
}

}  // namespace
}  // namespace device_inventory

const char* DeviceInventory_Read(DeviceInventorySink sink, void* context) {
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
