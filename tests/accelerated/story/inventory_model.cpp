#include "accelerated/story/inventory_model.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "accelerated/story/text.h"

namespace story {
namespace {

constexpr char kHidClass[] = "{4D1E55B2-F16F-11CF-88CB-001111000030}";
constexpr std::size_t kMostRecords = 500;
/// A longer instance id does not fit into what the plug-in asks with.
constexpr std::size_t kMostIdUnits = 259;

bool HasInterface(const DeviceFact& device, const std::string& classGuid) {
    return std::any_of(device.interfaces.begin(), device.interfaces.end(),
                       [&](const InterfaceFact& one) { return one.classGuid == classGuid; });
}

std::wstring Property(const DeviceFact& device, const char* name) {
    const auto found = device.properties.find(name);
    return found == device.properties.end() ? std::wstring() : found->second;
}

DeviceRecord RecordOf(const DeviceFact& device) {
    DeviceRecord record;
    record.isRemovable = device.removable;
    record.id = UpperCase(device.id);
    record.className = Property(device, "Class");
    record.maker = Property(device, "Manufacturer");
    record.description = Property(device, "DeviceDesc");
    record.name = Property(device, "FriendlyName");
    AppendUnique(record.name, Property(device, "Name"));
    record.container = Property(device, "ContainerId");
    record.device = VendorAndProduct(record.id);
    return record;
}

/// What the device itself says, through each HID interface that can be opened.
void AskHid(DeviceRecord& record, const DeviceFact& device) {
    for (const InterfaceFact& one : device.interfaces) {
        if (one.classGuid == kHidClass && one.opens) {
            record.name = one.product.value_or(record.name);
            record.maker = one.manufacturer.value_or(record.maker);
        }
    }
}

using Filter = std::function<bool(const DeviceFact&)>;

void Fill(DeviceRecords& inventory, const std::vector<DeviceFact>& devices, const Presence& present,
          bool asksHid, const Filter& wanted) {
    for (std::size_t i = 0; i < devices.size() && inventory.size() < kMostRecords; ++i) {
        const DeviceFact& device = devices[i];
        if (!present[i] || device.id.size() > kMostIdUnits || !wanted(device)) {
            continue;
        }
        DeviceRecord record = RecordOf(device);
        if (asksHid) {
            AskHid(record, device);
        }
        std::wstring key = record.id;
        inventory.emplace(std::move(key), std::move(record));  // Keeps what is there.
    }
}

}  // namespace

DeviceRecords InventoryAtStart(const std::vector<DeviceFact>& devices, const Presence& present) {
    DeviceRecords inventory;
    Fill(inventory, devices, present, /*asksHid=*/true,
         [](const DeviceFact& device) { return HasInterface(device, kHidClass); });
    Fill(inventory, devices, present, /*asksHid=*/false, [](const DeviceFact&) { return true; });
    return inventory;
}

void AddArrival(DeviceRecords& inventory, const std::vector<DeviceFact>& devices,
                const Presence& present, const DeviceFact& arrived) {
    for (const InterfaceFact& one : arrived.interfaces) {
        Fill(inventory, devices, present, /*asksHid=*/true,
             [&](const DeviceFact& device) { return HasInterface(device, one.classGuid); });
    }
}

std::wstring VendorAndProduct(const std::wstring& id) {
    static const std::pair<std::wstring, std::size_t> kMarkersAndLengths[] = {
        {L"DISPLAY\\", 15}, {L"VID&", 21}, {L"VID_", 17}, {L"VEN_", 17}};
    for (const auto& [marker, length] : kMarkersAndLengths) {
        const std::size_t begin = id.find(marker);
        // Something has to follow the piece.
        if (begin != std::wstring::npos && begin + length < id.size()) {
            return id.substr(begin, length);
        }
    }
    return {};
}

}  // namespace story
