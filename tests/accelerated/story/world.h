// How the machine stands after each happening of the script.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "accelerated/story/inventory_model.h"
#include "accelerated/story/machine_facts.h"

namespace story {

/// One line of a script.
using Happening = nlohmann::json;

struct World {
    std::string consent;
    std::map<std::string, int> features;
    bool switchesKey = false;  ///< Whether the key of the switches exists.
    std::optional<int> popUpBlocking, powerfulMode;
    Presence present;
};

/// Entry n is the world after the first n happenings.
std::vector<World> WorldsOf(const MachineFacts& machine, const std::vector<Happening>& script);

/// Inventory after the first n happenings of a run that began with world `first`; entry 0 belongs
/// to that one.
std::vector<DeviceRecords> InventoriesOf(const MachineFacts& machine,
                                         const std::vector<Happening>& script,
                                         const std::vector<World>& worlds, std::size_t first,
                                         std::size_t last);

/// Whether the feature switch and the region allow device lists.
bool AllowsDeviceLists(const MachineFacts& machine, const World& world);

}  // namespace story
