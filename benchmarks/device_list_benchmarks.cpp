// Filling the device map and sending the device list, on instant answers.
#include <memory>
#include <stdexcept>
#include <string>

#include "device_reporter/device_enumeration.h"
#include "device_reporter/device_list_payload.h"
#include "device_reporter/report_device_info.h"
#include "floors/plain_calls.h"
#include "floors/plain_records.h"
#include "instant_system.h"
#include "paired.h"
#include "sample_machine.h"

namespace {

using DeviceReporter::DeviceMap;
using DeviceReporter::ReportDeviceInfo;

constexpr std::size_t kDevices = 500;

DeviceMap Fill() {
    DeviceMap devices;
    DeviceReporter::AddAllDevicesToMap(devices);
    return devices;
}

void InstantFill(benchmark::State& state) {
    const auto devices = benchmarks::SampleDevices(static_cast<std::size_t>(state.range(0)));
    const benchmarks::TextRows rows = benchmarks::PrepareTexts(devices);
    benchmarks::InstantMachine().world().machine.devices = devices;
    if (Fill().size() != devices.size() ||
        benchmarks::FillFromTexts(rows).size() != devices.size()) {
        throw std::runtime_error("a fill did not take all devices");
    }
    const auto floor = [&rows] {
        benchmarks::WalkDevices();
        return benchmarks::FillFromTexts(rows);
    };
    benchmarks::RunPaired(state, Fill, floor, static_cast<double>(devices.size()));
}
BENCHMARK(InstantFill)->Apply(benchmarks::Repeat)->Arg(50)->Arg(100)->Arg(200)->Arg(350)->Arg(500);

/// A reporter that knows so many devices, all of which are reported.
std::unique_ptr<ReportDeviceInfo> MakeReporter(std::size_t devices) {
    simulation::Machine& machine = benchmarks::InstantMachine().world().machine;
    machine = {};
    machine.devices = benchmarks::SampleDevices(devices);
    auto reporter = std::make_unique<ReportDeviceInfo>();
    reporter->devices = Fill();
    return reporter;
}

std::size_t Send(const ReportDeviceInfo& reporter) {
    DeviceReporter::SendDeviceList(reporter);
    return benchmarks::EventBytes();
}

std::size_t CountObjects(const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find("{\"class\""); at != std::string::npos;
         at = text.find("{\"class\"", at + 1)) {
        ++count;
    }
    return count;
}

/// Nothing is measured that does not do the same.
void RequireAllSent(const ReportDeviceInfo& reporter, std::size_t devices) {
    std::string values;
    benchmarks::CollectEventValues(&values);
    Send(reporter);
    benchmarks::CollectEventValues(nullptr);
    if (CountObjects(values) != devices ||
        CountObjects(benchmarks::MakeDeviceArray(reporter.devices).dump()) != devices) {
        throw std::runtime_error("not all devices were sent");
    }
}

void InstantSend(benchmark::State& state) {
    const auto devices = static_cast<std::size_t>(state.range(0));
    const auto reporter = MakeReporter(devices);
    RequireAllSent(*reporter, devices);
    benchmarks::RunPaired(
        state, [&] { return Send(*reporter); },
        [&] { return benchmarks::MakeDeviceArray(reporter->devices).dump(); },
        static_cast<double>(devices));
}
BENCHMARK(InstantSend)->Apply(benchmarks::Repeat)->Arg(50)->Arg(100)->Arg(200)->Arg(350)->Arg(500);

/// The same against the serialising alone, of an array that is there already.
void InstantSendAgainstDump(benchmark::State& state) {
    const auto reporter = MakeReporter(kDevices);
    const nlohmann::json array = benchmarks::MakeDeviceArray(reporter->devices);
    benchmarks::RunPaired(
        state, [&] { return Send(*reporter); }, [&array] { return array.dump(); }, kDevices);
}
BENCHMARK(InstantSendAgainstDump)->Apply(benchmarks::Repeat);

}  // namespace
