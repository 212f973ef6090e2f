// Which devices the inventory holds after its start and after arrivals, and what it says of them.
#pragma once

#include <string>
#include <vector>

#include "accelerated/story/device_record.h"
#include "accelerated/story/machine_facts.h"

namespace story {

/// Devices in the machine's order, and which of them are there at the moment.
using Presence = std::vector<bool>;

/// HID interfaces first, then everything.
DeviceRecords InventoryAtStart(const std::vector<DeviceFact>& devices, const Presence& present);

/// Each interface of the device arrives, and with it whatever is present in its class.
void AddArrival(DeviceRecords& inventory, const std::vector<DeviceFact>& devices,
                const Presence& present, const DeviceFact& arrived);

/// The vendor and product in an instance id in capital letters.
std::wstring VendorAndProduct(const std::wstring& id);

}  // namespace story
