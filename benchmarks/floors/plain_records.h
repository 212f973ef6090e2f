// The least work of our own that the results themselves ask for.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "device_reporter/device_info.h"
#include "simulation/machine.h"

namespace benchmarks {

/// The texts of devices, at hand as the system gives them.
using TextRows = std::vector<std::vector<const wchar_t*>>;
TextRows PrepareTexts(const std::vector<simulation::Device>& devices);

/// One record, seven texts and one insert for each row.
DeviceReporter::DeviceMap FillFromTexts(const TextRows& rows);

/// One JSON array of the objects of all devices, built once.
nlohmann::json MakeDeviceArray(const DeviceReporter::DeviceMap& devices);

}  // namespace benchmarks
