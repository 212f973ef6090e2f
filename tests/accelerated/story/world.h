// How the machine stands after each happening of the script.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <vector>

#include "accelerated/story/inventory_model.h"
#include "simulation/machine.h"

namespace story {

/// One line of a script.
using Happening = nlohmann::json;

/// Entry n is the machine after the first n happenings. Throws std::runtime_error where a script
/// says something that the model does not know.
std::vector<simulation::Machine> MachinesOf(const simulation::Machine& machine,
                                            const std::vector<Happening>& script);

/// Inventory after the first n happenings of a run that began with machine `first`; entry 0 belongs
/// to that one.
std::vector<DeviceMap> InventoriesOf(const std::vector<simulation::Machine>& machines,
                                     const std::vector<Happening>& script, std::size_t first,
                                     std::size_t last);

/// Whether the feature switch and the region allow device lists.
bool AllowsDeviceLists(const simulation::Suite& suite);

}  // namespace story
