// How much memory a map of 500 devices takes. Prints one sample in the form of Google Benchmark.
//
// The heap grows in large steps and first uses up what the program freed before, so that many maps
// are filled and kept.
#include <windows.h>

#include <cstdio>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "floors/plain_calls.h"
#include "instant_system.h"
#include "sample_machine.h"

namespace {

constexpr std::size_t kMaps = 64;

/// What the process has committed for itself alone.
std::size_t PrivateBytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const BYTE* address = nullptr;
         VirtualQuery(address, &region, sizeof(region)) == sizeof(region);
         address += region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            bytes += region.RegionSize;
        }
    }
    return bytes;
}

std::size_t TextBytes(const DeviceReporter::DeviceMap& devices) {
    std::size_t units = 0;
    for (const auto& [id, device] : devices) {
        units += device.instanceId.size() + device.parent.size() + device.name.size() +
                 device.manufacturer.size() + device.className.size() + device.description.size() +
                 device.vendorId.size() + device.containerId.size();
    }
    return units * sizeof(wchar_t);
}

}  // namespace

int main() {
    benchmarks::UseInstantSuite();
    benchmarks::InstantMachine().world().machine.devices = benchmarks::SampleDevices(500);
    std::vector<DeviceReporter::DeviceMap> maps(kMaps);
    // The machine, too, takes memory at its first fill.
    benchmarks::WalkDevices();
    const std::size_t before = PrivateBytes();
    for (DeviceReporter::DeviceMap& map : maps) {
        DeviceReporter::AddAllDevicesToMap(map);
    }
    const double taken = static_cast<double>(PrivateBytes() - before) / kMaps;
    const auto texts = static_cast<double>(TextBytes(maps.back()));
    std::printf(
        "{\"benchmarks\": [{\"name\": \"FillMemory\", \"run_type\": \"iteration\", "
        "\"ratio\": %f, \"bytes\": %.0f, \"floor_bytes\": %.0f}]}\n",
        taken / texts, taken, texts);
    return maps.back().size() == 500 ? 0 : 1;
}
