// Device records whose size as JSON is known.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "device_reporter/device_info.h"

namespace device_list_test {

/// What a chunk counts for a device with five empty texts:
/// {"class":"","desc":"","device":"","maker":"","name":""} and 5 for the separators.
inline constexpr std::size_t kEmptyCost = 60;
/// The same without the name.
inline constexpr std::size_t kEmptyCostWithoutName = 50;
/// What a chunk has room for.
inline constexpr std::size_t kRoom = 1020;

/// A record that costs exactly this much when it is written with or without its name. Its vendorId
/// begins with four digits of `number`; vendorId and className are not empty. Throws
/// std::invalid_argument for costs that cannot be made: 93 to 220 can with, 83 to 178 without name.
DeviceReporter::DeviceInfo RecordOfCost(std::size_t cost, bool withName, unsigned number = 0);

/// As many records as needed to cost exactly `cost` together, numbered from 0. Every one but the
/// last costs a whole part of a chunk's room: a fifth with, a sixth without name.
std::vector<DeviceReporter::DeviceInfo> RecordsOfCost(std::size_t cost, bool withName);

/// The four digits at the begin of each device's "device" text, in the chunk's order. Throws when
/// the chunk is not what a chunk has to be: a compact array of objects.
std::vector<std::string> NumbersIn(const std::string& chunk);

}  // namespace device_list_test
