// What the reports of one event each say.
#pragma once

#include <string>
#include <vector>

#include "accelerated/story/outcome.h"
#include "accelerated/story/world.h"

namespace story {

/// Of a report that is due. Silent on a machine without BIOS texts.
Outcome BiosReport(const MachineFacts& machine);

/// Silent where the user has no such switches.
Outcome OptimisationReport(const MachineFacts& machine, const World& world);

/// Of a firmware event with that code, with the line that goes before it.
Outcome FirmwareReport(const MachineFacts& machine, unsigned code);

}  // namespace story
