// The sections of a machine file, each from its JSON to its part of the model. All throw
// MachineFileError.
#pragma once

#include <functional>
#include <vector>

#include "simulation/loader/json_node.h"
#include "simulation/machine.h"

namespace simulation {

/// Devices and groups of devices that are repeated with a running number.
std::vector<Device> ReadDevices(const JsonNode& list);
/// The members of a device's "properties".
std::vector<DeviceProperty> ReadProperties(const JsonNode& members);
std::vector<Printer> ReadPrinters(const JsonNode& list);
Display ReadDisplay(const JsonNode& node);
Logons ReadLogons(const JsonNode& node);
Suite ReadSuite(const JsonNode& node);

/// The value behind `key` where the object has it; otherwise `target` keeps its default.
template <class Target, class Reader>
void ReadIfPresent(const JsonObject& object, std::string_view key, Target& target, Reader reader) {
    if (const auto node = object.Find(key)) {
        target = std::invoke(reader, *node);
    }
}

/// The same for values that null makes absent.
template <class Value, class Reader>
void ReadNullable(const JsonObject& object, std::string_view key, std::optional<Value>& target,
                  Reader reader) {
    if (const auto node = object.Find(key)) {
        target = node->IsNull() ? std::nullopt : std::optional<Value>(std::invoke(reader, *node));
    }
}

}  // namespace simulation
