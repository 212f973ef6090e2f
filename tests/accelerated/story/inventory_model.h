// What the inventory says of devices, printers and displays.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/device_info.h"
#include "simulation/machine.h"

namespace story {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;

/// Which devices it holds after its start: HID interfaces first, then everything.
DeviceMap InventoryAtStart(const simulation::Machine& machine);

/// Each interface of the device arrives, and with it whatever is present in its class.
void AddArrival(DeviceMap& inventory, const simulation::Machine& machine,
                const simulation::Device& arrived);

std::vector<DeviceInfo> PrinterRecords(const simulation::Machine& machine);

/// None at all when one display cannot be read.
std::vector<DeviceInfo> DisplayRecords(const simulation::Machine& machine);

/// Adds a line, unless it is empty or stands somewhere in the text already.
void AppendUnique(std::wstring& text, const std::wstring& added);

}  // namespace story
