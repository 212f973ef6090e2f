// Devices that a test adds to the machine it runs on.
#pragma once

#include <vector>

#include "simulation/machine.h"

namespace real_devices {

/// Whether this is Wine.
bool RunsInWine();

inline constexpr char kOnlyInWine[] = "changes the machine, which only a Wine prefix is there for";

/// While it lives, the operating system has these devices with their properties and interfaces;
/// only ids, properties and interface classes are used. What an earlier run left behind is removed
/// first. Throws std::runtime_error naming the call that failed.
class RegisteredDevices {
public:
    explicit RegisteredDevices(const std::vector<simulation::Device>& devices);
    ~RegisteredDevices();
    RegisteredDevices(const RegisteredDevices&) = delete;
    RegisteredDevices& operator=(const RegisteredDevices&) = delete;
};

/// 120 devices of several kinds whose instance ids end with "\TALLYTEST" and a number, so that they
/// are found again.
std::vector<simulation::Device> SampleInventory();

}  // namespace real_devices
