// What each report says.
#pragma once

#include "accelerated/story/inventory_model.h"
#include "accelerated/story/outcome.h"
#include "simulation/machine.h"

namespace story {

/// Of a report that is due. Silent on a machine without BIOS texts.
Outcome BiosReport(const simulation::Machine& machine);

/// Silent where the user has no such switches.
Outcome OptimisationReport(const simulation::Machine& machine);

/// Of a firmware event with that code, with the line that goes before it.
Outcome FirmwareReport(const simulation::Machine& machine, unsigned code);

/// Begins with this line.
inline constexpr char kListLine[] =
    "Peripheral list(DeviceReporter::ReportDeviceInfo::DoReportDevices)";
Outcome DeviceListReport(const DeviceMap& inventory, const simulation::Machine& machine);

}  // namespace story
