// Devices for simulated machines.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulation/machine.h"
#include "simulation/well_known.h"

namespace device_tests {

/// A started device without properties.
inline simulation::Device PlainDevice(const std::wstring& instanceId) {
    simulation::Device device;
    device.instanceId = instanceId;
    return device;
}

/// A HID interface that can be opened.
inline simulation::DeviceInterface HidInterface(const std::wstring& path,
                                                std::optional<std::wstring> product,
                                                std::optional<std::wstring> manufacturer) {
    simulation::HidAnswers answers;
    answers.product = std::move(product);
    answers.manufacturer = std::move(manufacturer);
    return {simulation::kHidInterface, path, answers};
}

/// "USB\000" and so on, in the order of the device map.
inline std::vector<simulation::Device> ManyDevices(std::size_t count) {
    std::vector<simulation::Device> devices;
    for (std::size_t i = 0; i < count; ++i) {
        std::wstring number = std::to_wstring(i);
        number.insert(0, 3 - std::min<std::size_t>(3, number.size()), L'0');
        simulation::Device device = PlainDevice(L"USB\\" + number);
        device.interfaces.push_back({simulation::kHidInterface, L"\\\\?\\usb#" + number, {}});
        devices.push_back(std::move(device));
    }
    return devices;
}

}  // namespace device_tests
