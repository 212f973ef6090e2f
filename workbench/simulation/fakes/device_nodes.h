// Device nodes as SetupAPI and the configuration manager know them.
#pragma once

#include <windows.h>

#include <string>

#include "simulation/simulated_machine.h"

namespace simulation {

/// The number of a device node (a DEVINST). An id keeps its number as long as the world lives, also
/// when the device is unplugged and plugged in again. Under the world's lock.
DWORD NodeNumber(World& world, const std::wstring& instanceId);

/// The instance id behind a number; empty when it was never given out. Under the world's lock.
std::wstring InstanceIdOf(World& world, DWORD node);

/// The device with exactly this id, or null when the machine does not have it (any longer).
const Device* FindDevice(const Machine& machine, const std::wstring& instanceId);

}  // namespace simulation
