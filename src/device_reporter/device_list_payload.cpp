#include "device_reporter/device_list_payload.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "device_reporter/device_classification.h"
#include "device_reporter/device_info.h"
#include "device_reporter/display_devices.h"
#include "device_reporter/printer_info.h"
#include "report/report_event.h"

namespace DeviceReporter {

namespace {

constexpr std::int32_t kDeviceListEventId = 992614533;

/// One list under its key.
struct DeviceList {
    const char* key;
    std::vector<std::string> chunks;
};

std::vector<DeviceList> BuildDeviceLists(const ReportDeviceInfo& reporter) {
    std::vector<DeviceInfo> hidDevices;
    std::vector<DeviceInfo> bluetoothDevices;
    std::vector<DeviceInfo> otherDevices;
    ClassifyDevices(reporter, hidDevices, bluetoothDevices, otherDevices);
    const std::vector<DeviceInfo> printers = ListPrinters();
    std::vector<DeviceInfo> displays;
    // The result is dropped: it is always true.
    AppendDisplayDevices(displays);
    return {
        {"HIDList", SerializeDeviceList(hidDevices, /*withName=*/true)},
        // A Bluetooth device's name is often its owner's.
        {"BluetoothList", SerializeDeviceList(bluetoothDevices, /*withName=*/false)},
        {"DeviceList", SerializeDeviceList(otherDevices, /*withName=*/true)},
        {"PrinterList", SerializeDeviceList(printers, /*withName=*/true)},
        {"DisplayList", SerializeDeviceList(displays, /*withName=*/true)},
    };
}

}  // namespace

void SendDeviceList(const ReportDeviceInfo& reporter) {
    const std::vector<DeviceList> lists = BuildDeviceLists(reporter);
    std::size_t eventCount = 0;
    for (const DeviceList& list : lists) {
        eventCount = std::max(eventCount, list.chunks.size());
    }
    for (std::size_t i = 0; i < eventCount; ++i) {
        std::vector<EventField> fields;
        for (const DeviceList& list : lists) {
            if (i < list.chunks.size()) {
                fields.push_back({list.key, list.chunks[i]});
            }
        }
        SendEvent(kDeviceListEventId, fields);
    }
}

}  // namespace DeviceReporter
