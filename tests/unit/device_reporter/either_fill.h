// Tests that hold for both fills of the device map.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace device_tests {

struct FillKind {
    const char* name;
    bool byInterface;
    std::string function;  ///< Under which the fill logs.
};

class EitherFill : public MachineTest, public testing::WithParamInterface<FillKind> {
protected:
    bool Run() {
        return GetParam().byInterface
                   ? DeviceReporter::AddDeviceInterfaceToMap(simulation::kHidInterface, devices)
                   : DeviceReporter::AddAllDevicesToMap(devices);
    }

    /// A log line of this fill.
    std::string Line(const std::string& text) const {
        return "log 3 " + text + "(" + GetParam().function + ")";
    }

    std::vector<std::wstring> Keys() const {
        std::vector<std::wstring> keys;
        for (const auto& [key, record] : devices) {
            keys.push_back(key);
        }
        return keys;
    }

    DeviceReporter::DeviceMap devices;
};

inline auto BothFills() {
    return testing::Values(FillKind{"Full", false, "DeviceReporter::AddAllDevicesToMap"},
                           FillKind{"Interface", true, "DeviceReporter::AddDeviceInterfaceToMap"});
}

inline std::string FillName(const testing::TestParamInfo<FillKind>& tested) {
    return tested.param.name;
}

}  // namespace device_tests
