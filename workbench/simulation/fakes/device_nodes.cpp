#include "simulation/fakes/device_nodes.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace simulation {
namespace {

struct DeviceNodes {
    std::vector<std::wstring> ids;  ///< Node number, less one, to instance id.
    std::unordered_map<std::wstring, DWORD> numbers;
};

}  // namespace

DWORD NodeNumber(World& world, const std::wstring& instanceId) {
    auto& nodes = world.FamilyState<DeviceNodes>();
    const auto [entry, added] =
        nodes.numbers.emplace(instanceId, static_cast<DWORD>(nodes.ids.size() + 1));
    if (added) {
        nodes.ids.push_back(instanceId);
    }
    return entry->second;
}

std::wstring InstanceIdOf(World& world, DWORD node) {
    const auto& ids = world.FamilyState<DeviceNodes>().ids;
    return node >= 1 && node <= ids.size() ? ids[node - 1] : std::wstring();
}

const Device* FindDevice(const Machine& machine, const std::wstring& instanceId) {
    const auto found =
        std::find_if(machine.devices.begin(), machine.devices.end(),
                     [&](const Device& device) { return device.instanceId == instanceId; });
    return found == machine.devices.end() ? nullptr : &*found;
}

}  // namespace simulation
