// Tests of the display functions.
#pragma once

#include <string>
#include <vector>

#include "device_reporter/display_info.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_displays.h"

namespace device_tests {

/// A machine with one monitor.
class DisplayTest : public MachineTest {
protected:
    DisplayTest() { machine.display.paths = {SampleDisplay(1)}; }

    bool Get() { return DeviceReporter::GetDisplayInfo(displays); }

    /// A log line of one of the display functions.
    static std::string Line(const std::string& text, const std::string& function) {
        return "log 3 " + text + "(`anonymous-namespace'::" + function + ")";
    }

    std::vector<DeviceReporter::DisplayInfo> displays;
};

}  // namespace device_tests
