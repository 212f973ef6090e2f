// Device maps of any content, sorted into lists.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/report_device_info.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "support/device_list_model.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using fuzz::RequireSame;

std::wstring MakeId(fuzz::Random& random) {
    return fuzz::MakeFromPieces(random, {L"HID", L"HID\\", L"BTH", L"BTHENUM\\", L"USB\\", L"VID_"},
                                40);
}

struct Inventory {
    DeviceMap devices;
};

void PrintTo(const Inventory& inventory, std::ostream* stream) {
    for (const auto& [id, device] : inventory.devices) {
        *stream << "\n    " << testing::PrintToString(id)
                << (device.isRemovable ? ", removable" : "") << ", container "
                << testing::PrintToString(device.containerId) << ", class "
                << testing::PrintToString(device.className) << ", device "
                << testing::PrintToString(device.vendorId);
    }
}

Inventory MakeInventory(fuzz::Random& random) {
    constexpr std::wstring_view kContainers[] = {L"", L"{1}", L"{2}", L"{3}", L"{1} "};
    constexpr std::wstring_view kClasses[] = {L"",       L"System",   L"HIDClass", L"SystemDevice",
                                              L"system", L"MySystem", L"Net",      L"Syste"};
    constexpr std::wstring_view kVendors[] = {L"", L"VID_046D&PID_C52B", L"x"};
    Inventory inventory;
    for (std::size_t count = random.Below(12); count > 0; --count) {
        DeviceInfo device;
        device.instanceId = MakeId(random);
        device.isRemovable = random.OneIn(3);
        device.containerId = random.Pick(kContainers);
        device.className = random.Pick(kClasses);
        device.vendorId = random.Pick(kVendors);
        inventory.devices.emplace(device.instanceId, device);
    }
    return inventory;
}

std::vector<std::wstring> IdsOf(const std::vector<DeviceInfo>& list) {
    std::vector<std::wstring> ids;
    for (const DeviceInfo& device : list) {
        ids.push_back(device.instanceId);
    }
    return ids;
}

void CheckInventory(const Inventory& inventory) {
    const DeviceMap& devices = inventory.devices;
    DeviceReporter::ReportDeviceInfo reporter;
    reporter.devices = devices;
    std::vector<DeviceInfo> hid;
    std::vector<DeviceInfo> bluetooth;
    std::vector<DeviceInfo> other;
    DeviceReporter::ClassifyDevices(reporter, hid, bluetooth, other);
    const test_support::ClassifiedDevices expected = test_support::ExpectedLists(devices);
    RequireSame(IdsOf(hid), IdsOf(expected.hid), "the HID list");
    RequireSame(IdsOf(bluetooth), IdsOf(expected.bluetooth), "the Bluetooth list");
    RequireSame(IdsOf(other), IdsOf(expected.other), "the list of the others");
}

TEST(ClassificationFuzz, PutsEachReportedDeviceIntoOneListInOrder) {
    fuzz::TryInputs("device maps to classify", 60000, MakeInventory, CheckInventory);
}

}  // namespace
