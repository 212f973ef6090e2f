// short_edid_program SIZE: describes the monitors of a machine whose only monitor has an EDID of
// SIZE bytes. Says how many records that gave, or which uncaught exception ended it.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <vector>

#include "device_reporter/display_devices.h"
#include "simulation/simulated_machine.h"
#include "standins/log_kit/log_kit_control.h"
#include "unit/device_reporter/sample_displays.h"

namespace {

constexpr int kUncaught = 77;

/// Reached only by what nobody catches. Without it the process would end in the C runtime's own
/// way, which differs between compilers.
[[noreturn]] void TellUncaughtException() {
    try {
        std::rethrow_exception(std::current_exception());
    } catch (const std::out_of_range&) {
        std::puts("uncaught std::out_of_range");
    } catch (...) {
        std::puts("uncaught exception of another type");
    }
    std::fflush(stdout);
    std::_Exit(kUncaught);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: device_sources_short_edid SIZE\n", stderr);
        return 2;
    }
    std::set_terminate(TellUncaughtException);
    LogKit_SetConsole(0);
    simulation::Machine machine;
    machine.display.paths = {device_tests::SampleDisplay(1)};
    machine.display.paths[0].edid =
        device_tests::SampleEdid(std::strtoul(argv[1], /*endptr=*/nullptr, /*base=*/10));
    const simulation::SimulatedMachine simulated(GetModuleHandleW(nullptr), machine);
    std::vector<DeviceReporter::DeviceInfo> devices;
    DeviceReporter::AppendDisplayDevices(devices);
    std::printf("%u records\n", static_cast<unsigned>(devices.size()));
    return 0;
}
