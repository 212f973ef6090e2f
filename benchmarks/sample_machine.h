// The machine that the benchmarks measure on.
#pragma once

#include <cstddef>
#include <vector>

#include "simulation/machine.h"

namespace benchmarks {

/// Devices as a machine with many docks, hubs and headsets has them: HID, Bluetooth, USB and PCI
/// devices in turn, each with all seven properties that are asked for. Each is removable and has a
/// vendor and product piece, so that each would be reported.
std::vector<simulation::Device> SampleDevices(std::size_t count);

std::vector<simulation::Printer> SamplePrinters(std::size_t count);

/// Each with 256 bytes of EDID.
simulation::Display SampleDisplay(std::size_t paths);

}  // namespace benchmarks
