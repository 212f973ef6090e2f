// Whole devices, HID ones among them, as the device set gives them, in any state of disrepair.
#include <windows.h>
#include <cfgmgr32.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "device_reporter/device_text.h"
#include "fuzz/campaign.h"
#include "fuzz/sources/simulated_system.h"
#include "fuzz/texts.h"
#include "simulation/well_known.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using fuzz::Require;
using fuzz::RequireSame;
using fuzz_sources::Shown;
using simulation::Device;
using simulation::DeviceInterface;
using simulation::DeviceProperty;

constexpr std::size_t kIdCapacity = 260;
constexpr std::size_t kPropertyUnits = 2048;
constexpr std::size_t kHidCapacity = 260;
/// What the product tells the HID library is the size in bytes, half of its buffer.
constexpr std::size_t kHidUnitsTold = kHidCapacity / sizeof(wchar_t);
/// A device of this id is in the map before the fill.
constexpr wchar_t kKnownId[] = L"USB\\VID_1A3C&PID_0021\\KNOWN";

struct DeviceSet {
    bool byInterface = false;
    bool opensNot = false;
    simulation::Machine machine;
};

/// Written without terminator; empty when it is not there.
std::wstring TextOf(const Device& device, const DEVPROPKEY& key) {
    const DeviceProperty* const property = simulation::FindProperty(device.properties, key);
    return property == nullptr
               ? std::wstring()
               : std::wstring(reinterpret_cast<const wchar_t*>(property->bytes.data()),
                              property->bytes.size() / sizeof(wchar_t));
}

void PrintTo(const DeviceSet& set, std::ostream* stream) {
    const simulation::Lies& lies = set.machine.lies;
    *stream << (set.byInterface ? "the interface fill" : "the full fill") << " of "
            << (set.opensNot ? "a set that does not open" : "a set")
            << (lies.unterminatedTexts ? " without terminators" : "") << ", sizes of details "
            << testing::PrintToString(lies.detailSizes);
    for (const Device& device : set.machine.devices) {
        *stream << "\n    id, status, failure, name, maker: "
                << Shown(device.instanceId, device.status, device.statusResult,
                         TextOf(device, simulation::kFriendlyNameKey),
                         TextOf(device, simulation::kManufacturerKey));
        for (const auto& [interfaceClass, path, hid] : device.interfaces) {
            *stream << "\n        HID path, failure, product, manufacturer: "
                    << Shown(path, hid->openError, hid->product, hid->manufacturer);
        }
    }
}

/// As a buffer is filled: often to its very end.
std::wstring MakeFilling(fuzz::Random& random, std::size_t capacity) {
    if (random.OneIn(4)) {
        return std::wstring(capacity, static_cast<wchar_t>(random.Between(1, 0xFFFF)));
    }
    return fuzz::MakeText(random, capacity);
}

std::wstring MakeId(fuzz::Random& random) {
    if (random.OneIn(16)) {
        return kKnownId;
    }
    if (random.OneIn(8)) {
        return MakeFilling(random, kIdCapacity);
    }
    return fuzz::MakeFromPieces(
        random,
        {L"usb\\", L"USB\\", L"HID\\", L"Vid_046d", L"VID_046D", L"&Pid_c52b", L"&PID_C52B",
         L"\\6&12ab", L"\\", L"DISPLAY\\", L"VEN_", L"VID&0002"},
        kIdCapacity - 1);
}

void AddText(fuzz::Random& random, Device& device, const DEVPROPKEY& key) {
    const std::wstring text = MakeFilling(random, random.OneIn(64) ? kPropertyUnits : 60);
    if (!text.empty()) {
        const auto* const bytes = reinterpret_cast<const BYTE*>(text.data());
        device.properties.push_back(DeviceProperty::Raw(
            key, DEVPROP_TYPE_STRING, {bytes, bytes + text.size() * sizeof(wchar_t)}));
    }
}

DeviceInterface MakeInterface(fuzz::Random& random, const std::wstring& path) {
    DeviceInterface offered{simulation::kHidInterface, path, simulation::HidAnswers()};
    offered.hid->openError = random.OneIn(8) ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
    if (!random.OneIn(4)) {
        offered.hid->product = MakeFilling(random, kHidUnitsTold);
    }
    if (!random.OneIn(4)) {
        offered.hid->manufacturer = MakeFilling(random, kHidUnitsTold);
    }
    return offered;
}

Device MakeDevice(fuzz::Random& random, const std::wstring& name, simulation::Lies& lies) {
    Device device;
    device.instanceId = MakeId(random);
    device.statusResult = random.OneIn(8) ? CR_NO_SUCH_DEVNODE : CR_SUCCESS;
    device.status = static_cast<ULONG>(random.Bits());
    AddText(random, device, simulation::kFriendlyNameKey);
    AddText(random, device, simulation::kManufacturerKey);
    for (std::size_t i = random.Below(3); i > 0; --i) {
        const std::wstring path = L"\\\\?\\HID#" + name + L"#" + std::to_wstring(i);
        device.interfaces.push_back(MakeInterface(random, path));
        if (random.OneIn(4)) {
            lies.detailSizes[path] =
                static_cast<DWORD>(random.OneIn(2) ? random.Below(10) : random.Between(8, 400));
        }
    }
    return device;
}

DeviceSet MakeDeviceSet(fuzz::Random& random) {
    DeviceSet set;
    set.byInterface = !random.OneIn(4);
    set.opensNot = random.OneIn(32);
    set.machine.lies.unterminatedTexts = random.OneIn(2);
    for (std::size_t i = random.Below(5); i > 0; --i) {
        set.machine.devices.push_back(MakeDevice(random, std::to_wstring(i), set.machine.lies));
    }
    return set;
}

std::wstring UpTo(const std::wstring& units, std::size_t capacity) {
    const std::wstring text = units.substr(0, capacity);
    return text.substr(0, text.find(L'\0'));
}

std::wstring ExpectedKey(const Device& device) {
    std::wstring key = UpTo(device.instanceId, kIdCapacity);
    std::transform(key.begin(), key.end(), key.begin(), [](wchar_t unit) {
        return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - 32) : unit;
    });
    return key;
}

/// Only a whole path leads to the device.
bool Opens(const DeviceInterface& offered, const simulation::Lies& lies) {
    const auto lie = lies.detailSizes.find(offered.path);
    return offered.hid->openError == ERROR_SUCCESS &&
           (lie == lies.detailSizes.end() ||
            lie->second >= sizeof(DWORD) + (offered.path.size() + 1) * sizeof(wchar_t));
}

/// The last answer of each kind wins; the second text is read over what the first one left.
void ExpectHid(const Device& device, const simulation::Lies& lies, std::wstring& name,
               std::wstring& maker) {
    for (const DeviceInterface& offered : device.interfaces) {
        if (!Opens(offered, lies)) {
            continue;
        }
        std::wstring buffer(kHidCapacity, L'\0');
        const auto read = [&](std::optional<std::wstring> text, std::wstring& field) {
            if (text && !lies.unterminatedTexts) {
                text->push_back(L'\0');
            }
            if (text && text->size() <= kHidUnitsTold) {
                std::copy(text->begin(), text->end(), buffer.begin());
                field = UpTo(buffer, kHidCapacity);
            }
        };
        read(offered.hid->product, name);
        read(offered.hid->manufacturer, maker);
    }
}

/// The first device of this id: its status is that of all.
const Device& NodeOf(const DeviceSet& set, const Device& device) {
    return *std::find_if(
        set.machine.devices.begin(), set.machine.devices.end(),
        [&](const Device& other) { return other.instanceId == device.instanceId; });
}

void CheckRecord(const DeviceInfo& record, const Device& device, const DeviceSet& set) {
    const Device& node = NodeOf(set, device);
    // A device without id has no node that could be asked.
    RequireSame(record.isRemovable,
                node.statusResult == CR_SUCCESS && !node.instanceId.empty() &&
                    (node.status & simulation::kDeviceRemovable) != 0,
                "a device is removable when its node says so");
    RequireSame(record.vendorId, DeviceReporter::GetVendorId(record.instanceId),
                "the vendor id is cut out of the id");
    std::wstring name = UpTo(TextOf(device, simulation::kFriendlyNameKey), kPropertyUnits);
    std::wstring maker = UpTo(TextOf(device, simulation::kManufacturerKey), kPropertyUnits);
    if (set.byInterface) {
        ExpectHid(device, set.machine.lies, name, maker);
    }
    RequireSame(record.name, name, "the name is that of the last HID interface, or the property");
    RequireSame(record.manufacturer, maker, "the maker likewise");
}

void CheckMap(const DeviceMap& devices, const DeviceSet& set) {
    for (const auto& [key, record] : devices) {
        RequireSame(key, record.instanceId, "the key is the instance id");
    }
    std::vector<std::wstring> seen{kKnownId};
    for (const Device& device : set.machine.devices) {
        const bool hasId =
            set.machine.lies.unterminatedTexts || device.instanceId.size() < kIdCapacity;
        const std::wstring key = ExpectedKey(device);
        if (!hasId || (set.byInterface && device.interfaces.empty()) ||
            std::count(seen.begin(), seen.end(), key) != 0) {
            continue;
        }
        seen.push_back(key);
        const auto found = devices.find(key);
        Require(found != devices.end(), "every device with an id is in the map", key);
        CheckRecord(found->second, device, set);
    }
    RequireSame(devices.size(), seen.size(), "no device is made up");
}

void CheckFill(const DeviceSet& set) {
    simulation::World& world = fuzz_sources::RunOn(set.machine);
    if (set.opensNot) {
        world.faults.FailCall("SetupDiGetClassDevsW", 1, ERROR_INVALID_DATA);
    }
    DeviceMap devices;
    devices[kKnownId].instanceId = kKnownId;
    devices[kKnownId].name = L"as it was";
    const bool filled = set.byInterface ? DeviceReporter::AddDeviceInterfaceToMap(
                                              simulation::kHidInterface, devices)
                                        : DeviceReporter::AddAllDevicesToMap(devices);
    RequireSame(filled, !set.opensNot, "the fill fails only without a device set");
    RequireSame(devices[kKnownId].name, L"as it was", "a known device is not refreshed");
    if (filled) {
        CheckMap(devices, set);
    }
    fuzz_sources::RequireAllReturned(world);
}

TEST(DeviceFuzz, FilesWhateverTheDeviceSetHoldsUnderUpperCasedIds) {
    fuzz::TryInputs("device sets", 200000, MakeDeviceSet, CheckFill);
}

}  // namespace
