// The sections of a machine file, each from its JSON to its part of the model. All throw
// MachineFileError.
#pragma once

#include <vector>

#include "simulation/loader/json_node.h"
#include "simulation/machine.h"

namespace simulation {

inline constexpr bool kRequired = true;

/// Devices and groups of devices that are repeated with a running number.
void Read(const JsonNode& list, std::vector<Device>& devices);
void Read(const JsonNode& node, Device& device);
void Read(const JsonNode& node, DeviceInterface& result);
void Read(const JsonNode& node, HidAnswers& hid);
/// The members of a device's "properties". One that is null has no type.
void Read(const JsonNode& members, std::vector<DeviceProperty>& properties);

void Read(const JsonNode& node, Printer& printer);
void Read(const JsonNode& node, PrinterDriver& driver);
void Read(const JsonNode& node, Display& display);
void Read(const JsonNode& node, DisplayPath& path);
void Read(const JsonNode& node, DisplayMode& mode);

void Read(const JsonNode& node, Logons& logons);
void Read(const JsonNode& node, Session& session);

void Read(const JsonNode& node, Firmware& firmware);
void Read(const JsonNode& node, Suite& suite);
void Read(const JsonNode& node, EcLogAnswer& answer);
void Read(const JsonNode& node, RegistryPreset& preset);
void Read(const JsonNode& node, std::map<std::wstring, FileVersion>& versions);

}  // namespace simulation
