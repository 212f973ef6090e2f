#include "accelerated/story/world.h"

#include <stdexcept>

#include "accelerated/story/text.h"

namespace story {
namespace {

constexpr int kListsAllowed = 3;

std::size_t DeviceIndex(const MachineFacts& machine, const Happening& happening) {
    const std::wstring id = Utf16FromUtf8(happening.at("device").get<std::string>());
    for (std::size_t i = 0; i < machine.devices.size(); ++i) {
        if (machine.devices[i].id == id) {
            return i;
        }
    }
    throw std::runtime_error("the machine has no device of " + happening.dump());
}

void SetSwitch(World& world, const Happening& happening) {
    std::optional<int>& value =
        happening.at("switch") == "PowerfulModeStatus" ? world.powerfulMode : world.popUpBlocking;
    if (happening.at("value").is_null()) {
        value.reset();
    } else {
        value = happening.at("value").get<int>();
        world.switchesKey = true;
    }
}

World After(const MachineFacts& machine, World world, const Happening& happening) {
    const std::string what = happening.at("do");
    if (what == "set_consent") {
        world.consent = happening.at("answer").get<std::string>();
    } else if (what == "set_feature") {
        world.features[happening.at("name").get<std::string>()] = happening.at("value").get<int>();
    } else if (what == "set_switch") {
        SetSwitch(world, happening);
    } else if (what == "plug_device" || what == "unplug_device") {
        world.present[DeviceIndex(machine, happening)] = what == "plug_device";
    } else if (what != "restart_plugin" && what != "fire_firmware_event" && what != "stop") {
        throw std::runtime_error("the model does not know the happening " + happening.dump());
    }
    return world;
}

}  // namespace

std::vector<World> WorldsOf(const MachineFacts& machine, const std::vector<Happening>& script) {
    World world;
    world.consent = machine.consent;
    world.features = machine.features;
    if (!machine.switchesSid.empty()) {
        world.popUpBlocking = machine.popUpBlocking;
        world.powerfulMode = machine.powerfulMode;
        world.switchesKey = world.popUpBlocking || world.powerfulMode;
    }
    for (const DeviceFact& device : machine.devices) {
        world.present.push_back(device.present);
    }
    std::vector<World> worlds{world};
    for (const Happening& happening : script) {
        worlds.push_back(After(machine, worlds.back(), happening));
    }
    return worlds;
}

std::vector<DeviceRecords> InventoriesOf(const MachineFacts& machine,
                                         const std::vector<Happening>& script,
                                         const std::vector<World>& worlds, std::size_t first,
                                         std::size_t last) {
    std::vector<DeviceRecords> inventories{
        InventoryAtStart(machine.devices, worlds[first].present)};
    for (std::size_t n = first; n < last; ++n) {
        DeviceRecords inventory = inventories.back();
        if (script[n].at("do") == "plug_device") {
            AddArrival(inventory, machine.devices, worlds[n + 1].present,
                       machine.devices[DeviceIndex(machine, script[n])]);
        }
        inventories.push_back(inventory);
    }
    return inventories;
}

bool AllowsDeviceLists(const MachineFacts& machine, const World& world) {
    const auto feature = world.features.find("ReportDeviceList");
    return feature != world.features.end() && feature->second == kListsAllowed &&
           (!machine.hasShelf || machine.shelfSaysChina);
}

}  // namespace story
