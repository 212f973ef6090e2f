#include "accelerated/story/inventory_model.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <utility>

#include "simulation/call_text.h"
#include "simulation/well_known.h"

namespace story {
namespace {

using simulation::Device;
using simulation::DeviceInterface;

constexpr std::size_t kMostRecords = 500;
// Longer answers do not fit into what the plug-in asks with.
constexpr std::size_t kMostIdUnits = 259;
constexpr std::size_t kMostPropertyBytes = 4096;
constexpr std::size_t kMostHidUnits = 129;

bool HasInterface(const Device& device, const GUID& interfaceClass) {
    return std::any_of(
        device.interfaces.begin(), device.interfaces.end(),
        [&](const DeviceInterface& one) { return one.interfaceClass == interfaceClass; });
}

std::wstring Lines(const wchar_t* list) {
    std::wstring lines;
    for (; *list != L'\0'; list += std::wcslen(list) + 1) {
        AppendUnique(lines, list);
    }
    return lines;
}

std::wstring TextOf(const simulation::DeviceProperty& property) {
    // Aligned as the types ask for it.
    std::vector<std::uint64_t> words(property.bytes.size() / sizeof(std::uint64_t) + 1);
    std::memcpy(words.data(), property.bytes.data(), property.bytes.size());
    switch (property.type) {
        case DEVPROP_TYPE_STRING:
            return reinterpret_cast<const wchar_t*>(words.data());
        case DEVPROP_TYPE_STRING_LIST:
            return Lines(reinterpret_cast<const wchar_t*>(words.data()));
        case DEVPROP_TYPE_GUID:
            return simulation::FromUtf8(
                simulation::GuidText(*reinterpret_cast<const GUID*>(words.data())));
        case DEVPROP_TYPE_UINT32:
            return std::to_wstring(*reinterpret_cast<const UINT32*>(words.data()));
        default:
            return {};
    }
}

std::wstring Property(const Device& device, const DEVPROPKEY& key) {
    const auto* const property = simulation::FindProperty(device.properties, key);
    return property != nullptr && property->bytes.size() <= kMostPropertyBytes ? TextOf(*property)
                                                                               : std::wstring();
}

std::wstring UpperCase(std::wstring text) {
    for (wchar_t& unit : text) {
        if (unit >= L'a' && unit <= L'z') {
            unit = static_cast<wchar_t>(unit - L'a' + L'A');
        }
    }
    return text;
}

/// The vendor and product in an instance id in capital letters.
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

DeviceInfo RecordOf(const Device& device) {
    DeviceInfo record;
    record.isRemovable =
        device.statusResult == 0 && (device.status & simulation::kDeviceRemovable) != 0;
    record.instanceId = UpperCase(device.instanceId);
    record.className = Property(device, simulation::kClassKey);
    record.manufacturer = Property(device, simulation::kManufacturerKey);
    record.description = Property(device, simulation::kDeviceDescKey);
    record.name = Property(device, simulation::kFriendlyNameKey);
    AppendUnique(record.name, Property(device, simulation::kNameKey));
    record.containerId = Property(device, simulation::kContainerIdKey);
    record.vendorId = VendorAndProduct(record.instanceId);
    return record;
}

void Replace(std::wstring& field, const std::optional<std::wstring>& answer) {
    if (answer && answer->size() <= kMostHidUnits) {
        field = *answer;
    }
}

/// What the device itself says, through each HID interface that can be opened.
void AskHid(DeviceInfo& record, const Device& device) {
    for (const DeviceInterface& one : device.interfaces) {
        if (one.interfaceClass == simulation::kHidInterface && one.hid &&
            one.hid->openError == ERROR_SUCCESS) {
            Replace(record.name, one.hid->product);
            Replace(record.manufacturer, one.hid->manufacturer);
        }
    }
}

using Filter = std::function<bool(const Device&)>;

void Fill(DeviceMap& inventory, const simulation::Machine& machine, bool asksHid,
          const Filter& wanted) {
    for (const Device& device : machine.devices) {
        if (inventory.size() == kMostRecords) {
            return;
        }
        if (!device.present || device.instanceId.size() > kMostIdUnits || !wanted(device)) {
            continue;
        }
        DeviceInfo record = RecordOf(device);
        if (asksHid) {
            AskHid(record, device);
        }
        std::wstring key = record.instanceId;
        inventory.emplace(std::move(key), std::move(record));  // Keeps what is there.
    }
}

}  // namespace

DeviceMap InventoryAtStart(const simulation::Machine& machine) {
    DeviceMap inventory;
    Fill(inventory, machine, /*asksHid=*/true,
         [](const Device& device) { return HasInterface(device, simulation::kHidInterface); });
    Fill(inventory, machine, /*asksHid=*/false, [](const Device&) { return true; });
    return inventory;
}

void AddArrival(DeviceMap& inventory, const simulation::Machine& machine, const Device& arrived) {
    for (const DeviceInterface& one : arrived.interfaces) {
        Fill(inventory, machine, /*asksHid=*/true,
             [&](const Device& device) { return HasInterface(device, one.interfaceClass); });
    }
}

void AppendUnique(std::wstring& text, const std::wstring& added) {
    if (text.empty()) {
        text = added;
    } else if (text.find(added) == std::wstring::npos) {
        text += L'\n' + added;
    }
}

}  // namespace story
