#include "simulation/fakes/device_sets.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <unordered_map>

#include "simulation/fakes/common.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

struct DeviceNodes {
    std::vector<std::wstring> ids;  ///< Node number, less one, to instance id.
    std::unordered_map<std::wstring, DWORD> numbers;
};

struct OpenSets {
    std::map<HDEVINFO, DeviceSet> sets;
};

GUID SetupClassOf(const Device& device) {
    GUID setupClass{};
    const DeviceProperty* const property = FindProperty(device.properties, kClassGuidKey);
    if (property != nullptr && property->bytes.size() == sizeof(setupClass)) {
        std::memcpy(&setupClass, property->bytes.data(), sizeof(setupClass));
    }
    return setupClass;
}

/// The item whose number Describe left in the caller's structure, or null.
template <class Item, class Data>
const Item* ItemOf(const std::vector<Item>& items, const Data* data) {
    const bool isOne = data != nullptr && data->cbSize == sizeof(*data) && data->Reserved >= 1 &&
                       data->Reserved <= items.size();
    return isOne ? &items[data->Reserved - 1] : nullptr;
}

/// An enumerator is the first piece of an id, "USB", or a whole id.
bool ComesFrom(const Device& device, const wchar_t* enumerator) {
    if (enumerator == nullptr) {
        return true;
    }
    const std::wstring& id = device.instanceId;
    return SameName(id, enumerator) || SameName(id.substr(0, id.find(L'\\')), enumerator);
}

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

const Device* FindDevice(const Machine& machine, const std::wstring& instanceId,
                         std::size_t likelyPlace) {
    if (likelyPlace < machine.devices.size() &&
        machine.devices[likelyPlace].instanceId == instanceId) {
        return &machine.devices[likelyPlace];
    }
    const auto found =
        std::find_if(machine.devices.begin(), machine.devices.end(),
                     [&](const Device& device) { return device.instanceId == instanceId; });
    return found == machine.devices.end() ? nullptr : &*found;
}

DeviceSet SelectDevices(World& world, const GUID* classGuid, const wchar_t* enumerator,
                        DWORD flags) {
    const bool anyClass = (flags & DIGCF_ALLCLASSES) != 0;
    const bool byInterface = (flags & DIGCF_DEVICEINTERFACE) != 0;
    DeviceSet set;
    for (const Device& device : world.machine.devices) {
        if (!ComesFrom(device, enumerator) || ((flags & DIGCF_PRESENT) != 0 && !device.present)) {
            continue;
        }
        const SetDevice candidate{device.instanceId, NodeNumber(world, device.instanceId),
                                  SetupClassOf(device),
                                  static_cast<std::size_t>(&device - world.machine.devices.data())};
        if (!byInterface) {
            if (anyClass || candidate.setupClass == *classGuid) {
                set.devices.push_back(candidate);
            }
            continue;
        }
        const std::size_t index = set.devices.size();
        for (const DeviceInterface& offered : device.interfaces) {
            if (anyClass || offered.interfaceClass == *classGuid) {
                set.interfaces.push_back(
                    {index, offered.interfaceClass, offered.path, device.present});
            }
        }
        if (!set.interfaces.empty() && set.interfaces.back().device == index) {
            set.devices.push_back(candidate);
        }
    }
    return set;
}

HDEVINFO OpenSet(World& world, DeviceSet set, std::string note) {
    const HDEVINFO handle = world.ledger.Acquire(ResourceKind::DeviceSet, std::move(note));
    world.FamilyState<OpenSets>().sets.emplace(handle, std::move(set));
    return handle;
}

DeviceSet* FindSet(World& world, HDEVINFO handle) {
    auto& sets = world.FamilyState<OpenSets>().sets;
    const auto found = sets.find(handle);
    return found == sets.end() ? nullptr : &found->second;
}

bool CloseSet(World& world, HDEVINFO handle) {
    world.FamilyState<OpenSets>().sets.erase(handle);
    return world.ledger.Release(ResourceKind::DeviceSet, handle);
}

void Describe(const DeviceSet& set, std::size_t index, SP_DEVINFO_DATA& data) {
    data.ClassGuid = set.devices[index].setupClass;
    data.DevInst = set.devices[index].node;
    data.Reserved = index + 1;
}

void Describe(const DeviceSet& set, std::size_t index, SP_DEVICE_INTERFACE_DATA& data) {
    data.InterfaceClassGuid = set.interfaces[index].interfaceClass;
    data.Flags = set.interfaces[index].active ? SPINT_ACTIVE : 0;
    data.Reserved = index + 1;
}

const SetDevice* FindDevice(const DeviceSet* set, const SP_DEVINFO_DATA* data) {
    const SetDevice* const found = set == nullptr ? nullptr : ItemOf(set->devices, data);
    return found != nullptr && found->node == data->DevInst ? found : nullptr;
}

const SetInterface* FindInterface(const DeviceSet* set, const SP_DEVICE_INTERFACE_DATA* data) {
    const SetInterface* const found = set == nullptr ? nullptr : ItemOf(set->interfaces, data);
    return found != nullptr && found->interfaceClass == data->InterfaceClassGuid ? found : nullptr;
}

}  // namespace simulation
