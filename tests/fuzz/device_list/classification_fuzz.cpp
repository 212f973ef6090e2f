// Device maps of any content, sorted into lists.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_classification.h"
#include "device_reporter/report_device_info.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"

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

bool SharesAContainerWithARemovableDevice(const DeviceInfo& device, const DeviceMap& devices) {
    for (const auto& [id, other] : devices) {
        if (other.isRemovable && other.containerId == device.containerId) {
            return true;
        }
    }
    return false;
}

/// The ids of the devices that belong into the list of those that begin with `prefix`.
std::vector<std::wstring> ExpectedIds(const DeviceMap& devices, std::wstring_view prefix) {
    std::vector<std::wstring> ids;
    for (const auto& [id, device] : devices) {
        const std::wstring_view begin = std::wstring_view(id).substr(0, 3);
        const bool isOther = begin != L"HID" && begin != L"BTH";
        if ((prefix.empty() ? isOther : begin == prefix) && !device.vendorId.empty() &&
            !device.className.empty() && device.className.find(L"System") == std::wstring::npos &&
            SharesAContainerWithARemovableDevice(device, devices)) {
            ids.push_back(id);
        }
    }
    return ids;
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
    RequireSame(IdsOf(hid), ExpectedIds(devices, L"HID"), "the HID list");
    RequireSame(IdsOf(bluetooth), ExpectedIds(devices, L"BTH"), "the Bluetooth list");
    RequireSame(IdsOf(other), ExpectedIds(devices, L""), "the list of the others");
}

TEST(ClassificationFuzz, PutsEachReportedDeviceIntoOneListInOrder) {
    fuzz::TryInputs("device maps to classify", 60000, MakeInventory, CheckInventory);
}

}  // namespace
