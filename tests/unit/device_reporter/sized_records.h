// Device records whose size as JSON is known.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "device_reporter/device_info.h"

namespace device_tests {

/// What a chunk counts for a device with five empty texts:
/// {"class":"","desc":"","device":"","maker":"","name":""} and 5 for the separators.
inline constexpr std::size_t kEmptyCost = 60;
/// The same without the name.
inline constexpr std::size_t kEmptyCostWithoutName = 50;
/// What a chunk has room for.
inline constexpr std::size_t kRoom = 1020;

/// A record that costs exactly this much when it is written with or without its name: from 93 or 83
/// on, so that vendorId and className are not empty, to 220 or 178.
inline DeviceReporter::DeviceInfo RecordOfCost(std::size_t cost, bool withName) {
    DeviceReporter::DeviceInfo record;
    std::size_t left = cost - (withName ? kEmptyCost : kEmptyCostWithoutName);
    for (std::wstring* const field : {&record.vendorId, &record.className, &record.description,
                                      &record.manufacturer, &record.name}) {
        field->assign(std::min<std::size_t>(left, 32), L'x');
        left -= field->size();
    }
    return record;
}

/// As many records as needed to cost exactly `cost` together. Every one but the last costs a whole
/// part of a chunk's room: a fifth with, a sixth without name.
inline std::vector<DeviceReporter::DeviceInfo> RecordsOfCost(std::size_t cost, bool withName) {
    const std::size_t part = kRoom / (withName ? 5 : 6);
    std::vector<DeviceReporter::DeviceInfo> records;
    for (; cost > part + 1; cost -= part) {
        records.push_back(RecordOfCost(part, withName));
    }
    if (cost > 0) {
        records.push_back(RecordOfCost(cost, withName));
    }
    return records;
}

}  // namespace device_tests
