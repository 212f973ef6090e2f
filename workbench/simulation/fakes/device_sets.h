// Device nodes as SetupAPI and the configuration manager know them, and device information sets:
// what SetupAPI found when a set was opened.
#pragma once

#include <windows.h>
#include <setupapi.h>

#include <cstddef>
#include <string>
#include <vector>

#include "simulation/simulated_machine.h"

namespace simulation {

/// The number of a device node (a DEVINST). An id keeps its number as long as the world lives, also
/// when the device is unplugged and plugged in again. Under the world's lock.
DWORD NodeNumber(World& world, const std::wstring& instanceId);

/// The instance id behind a number; empty when it was never given out. Under the world's lock.
std::wstring InstanceIdOf(World& world, DWORD node);

/// The device with exactly this id, or null when the machine does not have it (any longer). It is
/// looked for at `likelyPlace` first: a search for each call would be quadratic.
const Device* FindDevice(const Machine& machine, const std::wstring& instanceId,
                         std::size_t likelyPlace = 0);

struct SetDevice {
    std::wstring instanceId;
    DWORD node = 0;
    GUID setupClass{};      ///< All zero when the device has none.
    std::size_t place = 0;  ///< Among the machine's devices when the set was opened.
};

struct SetInterface {
    std::size_t device = 0;  ///< Index of its device in the set.
    GUID interfaceClass{};
    std::wstring path;
    bool active = true;
};

/// A set keeps what it found: devices that come and go later do not change it. It holds interfaces
/// only of the class that it was opened for, and none when it was not opened for interfaces.
struct DeviceSet {
    std::vector<SetDevice> devices;
    std::vector<SetInterface> interfaces;
};

/// Selects as SetupDiGetClassDevsW does. Under the world's lock.
DeviceSet SelectDevices(World& world, const GUID* classGuid, const wchar_t* enumerator,
                        DWORD flags);

HDEVINFO OpenSet(World& world, DeviceSet set, std::string note);
/// Null when no such set is open. Under the world's lock, as all below.
DeviceSet* FindSet(World& world, HDEVINFO handle);
/// False when no such set is open.
bool CloseSet(World& world, HDEVINFO handle);

/// The caller's structures carry a number that leads back into the set.
void Describe(const DeviceSet& set, std::size_t index, SP_DEVINFO_DATA& data);
void Describe(const DeviceSet& set, std::size_t index, SP_DEVICE_INTERFACE_DATA& data);

/// What the caller's structure stands for; null when it is not one of this set's. `set` may be
/// null.
const SetDevice* FindDevice(const DeviceSet* set, const SP_DEVINFO_DATA* data);
const SetInterface* FindInterface(const DeviceSet* set, const SP_DEVICE_INTERFACE_DATA* data);

}  // namespace simulation
