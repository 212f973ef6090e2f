#include "accelerated/story/world.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

#include "simulation/call_text.h"

namespace story {
namespace {

using simulation::Machine;

constexpr int kListsAllowed = 3;

std::size_t DeviceIndex(const Machine& machine, const Happening& happening) {
    const std::wstring id = simulation::FromUtf8(happening.at("device").get<std::string>());
    for (std::size_t i = 0; i < machine.devices.size(); ++i) {
        if (machine.devices[i].instanceId == id) {
            return i;
        }
    }
    throw std::runtime_error("the machine has no device of " + happening.dump());
}

Machine After(Machine machine, const Happening& happening) {
    const std::string what = happening.at("do");
    if (what == "set_consent") {
        machine.suite.consent = happening.at("answer").get<std::string>();
    } else if (what == "set_feature") {
        machine.suite.features[happening.at("name")] = happening.at("value").get<int>();
    } else if (what == "set_switch") {
        const auto& value = happening.at("value");
        (happening.at("switch") == "PowerfulModeStatus" ? machine.registry.powerfulMode
                                                        : machine.registry.popUpBlocking) =
            value.is_null() ? std::nullopt : std::optional(value.get<std::int32_t>());
    } else if (what == "plug_device" || what == "unplug_device") {
        machine.devices[DeviceIndex(machine, happening)].present = what == "plug_device";
    } else if (what != "restart_plugin" && what != "fire_firmware_event" && what != "stop") {
        throw std::runtime_error("the model does not know the happening " + happening.dump());
    }
    return machine;
}

}  // namespace

std::vector<Machine> MachinesOf(const Machine& machine, const std::vector<Happening>& script) {
    std::vector<Machine> machines{machine};
    for (const Happening& happening : script) {
        machines.push_back(After(machines.back(), happening));
    }
    return machines;
}

std::vector<DeviceMap> InventoriesOf(const std::vector<Machine>& machines,
                                     const std::vector<Happening>& script, std::size_t first,
                                     std::size_t last) {
    std::vector<DeviceMap> inventories{InventoryAtStart(machines[first])};
    for (std::size_t n = first; n < last; ++n) {
        DeviceMap inventory = inventories.back();
        if (script[n].at("do") == "plug_device") {
            const Machine& machine = machines[n + 1];
            AddArrival(inventory, machine, machine.devices[DeviceIndex(machine, script[n])]);
        }
        inventories.push_back(inventory);
    }
    return inventories;
}

bool AllowsDeviceLists(const simulation::Suite& suite) {
    const auto feature = suite.features.find("ReportDeviceList");
    if (feature == suite.features.end() || feature->second != kListsAllowed) {
        return false;
    }
    return !suite.shelf ||
           std::any_of(suite.shelf->begin(), suite.shelf->end(), [](const auto& one) {
               return one.first == "VRLoginGuide" && one.second == "china";
           });
}

}  // namespace story
