#include "fuzz/sources/device_set.h"

#include <gtest/gtest.h>

#include "fuzz/texts.h"

namespace fuzz_sources {
namespace {

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
    if (random.OneIn(16)) {
        return MakeFilling(random, kIdCapacity);
    }
    return fuzz::MakeFromPieces(
        random,
        {L"usb\\", L"USB\\", L"HID\\", L"Vid_046d", L"VID_046D", L"&Pid_c52b", L"&PID_C52B",
         L"\\6&12ab", L"\\", L"DISPLAY\\", L"VEN_", L"VID&0002"},
        kIdCapacity - 1);
}

AnyHid MakeHid(fuzz::Random& random) {
    // What the product tells the HID library is the size in bytes, half of its buffer.
    constexpr std::size_t kUnitsTold = kHidCapacity / sizeof(wchar_t);
    AnyHid hid;
    hid.detailFails = random.OneIn(8);
    hid.requiredSize = random.OneIn(8) ? random.Below(10) : random.Between(8, 400);
    hid.openFails = random.OneIn(8);
    if (!random.OneIn(4)) {
        hid.product = MakeFilling(random, kUnitsTold);
    }
    if (!random.OneIn(4)) {
        hid.manufacturer = MakeFilling(random, kUnitsTold);
    }
    return hid;
}

AnyDevice MakeDevice(fuzz::Random& random) {
    AnyDevice device;
    device.idFails = random.OneIn(16);
    device.id = MakeId(random);
    device.statusFails = random.OneIn(8);
    device.status = static_cast<unsigned long>(random.Bits());
    device.friendlyName = MakeFilling(random, random.OneIn(64) ? kPropertyUnits : 60);
    device.manufacturer = MakeFilling(random, random.OneIn(64) ? kPropertyUnits : 60);
    device.hidInterfaces.resize(random.Below(3));
    for (AnyHid& hid : device.hidInterfaces) {
        hid = MakeHid(random);
    }
    return device;
}

}  // namespace

void PrintTo(const AnyDeviceSet& set, std::ostream* stream) {
    *stream << (set.byInterface ? "the interface fill" : "the full fill") << " of "
            << (set.opensNot ? "a set that does not open" : "a set");
    for (const AnyDevice& device : set.devices) {
        *stream << "\n    id " << testing::PrintToString(device.id)
                << (device.idFails ? " (fails)" : "") << ", status " << device.status
                << (device.statusFails ? " (fails)" : "") << ", name "
                << testing::PrintToString(device.friendlyName) << ", maker "
                << testing::PrintToString(device.manufacturer);
        for (const AnyHid& hid : device.hidInterfaces) {
            *stream << "\n        HID " << (hid.detailFails ? "without detail" : "with detail")
                    << " of " << hid.requiredSize << (hid.openFails ? ", does not open" : "")
                    << ", product " << testing::PrintToString(hid.product) << ", manufacturer "
                    << testing::PrintToString(hid.manufacturer);
        }
    }
}

AnyDeviceSet MakeDeviceSet(fuzz::Random& random) {
    AnyDeviceSet set;
    set.byInterface = !random.OneIn(4);
    set.opensNot = random.OneIn(32);
    set.devices.resize(random.Below(5));
    for (AnyDevice& device : set.devices) {
        device = MakeDevice(random);
    }
    return set;
}

}  // namespace fuzz_sources
