// The full fill of the device map on the real system, with about 500 devices.
#include <stdexcept>

#include "device_reporter/device_enumeration.h"
#include "floors/plain_calls.h"
#include "library/device_sources/registered_devices.h"
#include "paired.h"
#include "sample_machine.h"
#include "standins/log_kit/log_kit_control.h"
#include "support/real_devices.h"

namespace {

/// With the eight that Wine has of its own, just below the map's limit.
constexpr std::size_t kRegistered = 490;

DeviceReporter::DeviceMap Fill() {
    DeviceReporter::DeviceMap devices;
    DeviceReporter::AddAllDevicesToMap(devices);
    return devices;
}

void RealFill(benchmark::State& state) {
    const std::size_t count = Fill().size();
    if (count < kRegistered || count != benchmarks::WalkDevices()) {
        throw std::runtime_error("the fill and the plain loop found different devices");
    }
    benchmarks::RunPaired(state, Fill, benchmarks::WalkDevices, static_cast<double>(count));
}
// A pair takes half a second.
BENCHMARK(RealFill)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20)
    ->Repetitions(15);

}  // namespace

int main(int argumentCount, char** arguments) {
    if (!real_devices::RunsInWine()) {
        throw std::runtime_error(real_devices::kOnlyInWine);
    }
    test_support::WaitForRealDevices();
    LogKit_SetConsole(0);
    const real_devices::RegisteredDevices registered(benchmarks::SampleDevices(kRegistered));
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
