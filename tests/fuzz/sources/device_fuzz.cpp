// Whole devices, HID ones among them, as the device set gives them, in any state of disrepair.
#include <windows.h>
// windows.h has to come first.
#include <cfgmgr32.h>
#include <gtest/gtest.h>
#include <setupapi.h>
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "device_reporter/device_text.h"
#include "fuzz/campaign.h"
#include "fuzz/sources/device_set.h"
#include "simulation/well_known.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using fuzz::Require;
using fuzz::RequireSame;
using namespace fuzz_sources;

constexpr std::size_t kMaxDevices = 500;
constexpr std::size_t kLeastDetail = 8;  ///< Of an interface's detail, in bytes.

std::wstring UpTo(const std::wstring& units, std::size_t capacity) {
    const std::wstring text = units.substr(0, capacity);
    return text.substr(0, text.find(L'\0'));
}

std::wstring ExpectedKey(const AnyDevice& device) {
    std::wstring key = UpTo(device.id, kIdCapacity);
    std::transform(key.begin(), key.end(), key.begin(), [](wchar_t unit) {
        return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - 32) : unit;
    });
    return key;
}

/// The last answer of each kind wins; the second string is read over what the first one left.
void ExpectHid(const AnyDevice& device, std::wstring& name, std::wstring& maker) {
    for (const AnyHid& hid : device.hidInterfaces) {
        if (hid.detailFails || hid.requiredSize < kLeastDetail || hid.openFails) {
            continue;
        }
        std::wstring buffer(kHidCapacity, L'\0');
        if (hid.product) {
            std::copy(hid.product->begin(), hid.product->end(), buffer.begin());
            name = UpTo(buffer, kHidCapacity);
        }
        if (hid.manufacturer) {
            std::copy(hid.manufacturer->begin(), hid.manufacturer->end(), buffer.begin());
            maker = UpTo(buffer, kHidCapacity);
        }
    }
}

void CheckRecord(const DeviceInfo& record, const AnyDevice& device, bool byInterface) {
    RequireSame(record.isRemovable, !device.statusFails && (device.status & 0x4000) != 0,
                "a device is removable when its node says so");
    RequireSame(record.vendorId, DeviceReporter::GetVendorId(record.instanceId),
                "the vendor id is cut out of the id");
    Require(record.instanceId.find(record.vendorId) != std::wstring::npos,
            "the vendor id is a part of the id", record.vendorId);
    std::wstring name = UpTo(device.friendlyName, kPropertyUnits);
    std::wstring maker = UpTo(device.manufacturer, kPropertyUnits);
    if (byInterface) {
        ExpectHid(device, name, maker);
    }
    RequireSame(record.name, name, "the name is that of the last HID interface, or the property");
    RequireSame(record.manufacturer, maker, "the maker likewise");
}

void CheckMap(const DeviceMap& devices, const AnyDeviceSet& set, bool byInterface) {
    Require(devices.size() <= kMaxDevices, "the map holds 500 devices at most", devices.size());
    for (const auto& [key, record] : devices) {
        RequireSame(key, record.instanceId, "the key is the instance id");
        Require(std::none_of(key.begin(), key.end(),
                             [](wchar_t unit) { return unit >= L'a' && unit <= L'z'; }),
                "the key is upper-cased", key);
    }
    std::vector<std::wstring> seen;
    for (const AnyDevice& device : set.devices) {
        const std::wstring key = ExpectedKey(device);
        if (device.idFails || std::count(seen.begin(), seen.end(), key) != 0) {
            continue;
        }
        seen.push_back(key);
        const auto found = devices.find(key);
        Require(found != devices.end(), "every device with an id is in the map", key);
        if (key != kKnownId) {
            CheckRecord(found->second, device, byInterface);
        }
    }
}

void CheckFill(const AnyDeviceSet& set) {
    const DeviceSetInForce inForce(set);
    DeviceMap devices;
    devices[kKnownId].instanceId = kKnownId;
    devices[kKnownId].name = L"as it was";
    const bool filled = set.byInterface ? DeviceReporter::AddDeviceInterfaceToMap(
                                              simulation::kHidInterface, devices)
                                        : DeviceReporter::AddAllDevicesToMap(devices);
    RequireSame(filled, !set.opensNot, "the fill fails only without a device set");
    RequireSame(devices[kKnownId].name, L"as it was", "a known device is not refreshed");
    if (filled) {
        CheckMap(devices, set, set.byInterface);
    } else {
        RequireSame(devices.size(), 1u, "nothing is made up");
    }
    RequireSame(inForce.OpenHandles(), 0, "every device set and file is closed");
}

TEST(DeviceFuzz, FilesWhateverTheDeviceSetHoldsUnderUpperCasedIds) {
    fuzz::TryInputs("device sets", 200000, MakeDeviceSet, CheckFill);
}

}  // namespace
