// What a device list looks like on its way out, worked out without the product's code and without
// its JSON library.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/device_info.h"
#include "support/recorded_events.h"

namespace test_support {

using DeviceRecords = std::vector<DeviceReporter::DeviceInfo>;

/// The chunks of one list, byte for byte.
std::vector<std::string> ExpectedChunks(const DeviceRecords& devices, bool withName);

struct ClassifiedDevices {
    DeviceRecords hid, bluetooth, other;
};

/// What shares a container with a removable device and is nothing of the system's own.
ClassifiedDevices ExpectedLists(const DeviceReporter::DeviceMap& devices);

/// The fields of each event: event i carries the i-th chunk of every list that has one.
std::vector<EventFields> ExpectedEvents(const DeviceReporter::DeviceMap& devices,
                                        const DeviceRecords& printers,
                                        const DeviceRecords& displays);

}  // namespace test_support
