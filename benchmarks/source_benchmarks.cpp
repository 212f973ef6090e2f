// Displays, printers and firmware events on instant answers.
#include <memory>
#include <stdexcept>
#include <vector>

#include "device_reporter/display_info.h"
#include "device_reporter/printer_info.h"
#include "floors/plain_calls.h"
#include "instant_system.h"
#include "paired.h"
#include "reporters/report_ec_log_info.h"
#include "sample_machine.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DisplayInfo;

/// Calls that take a few microseconds are timed by the dozen: the clock counts tenths of one.
constexpr int kRounds = 64;

template <class Work>
auto Rounds(Work work) {
    return [work] {
        auto kept = work();
        for (int i = 1; i < kRounds; ++i) {
            kept = work();
        }
        return kept;
    };
}

std::vector<DisplayInfo> ReadDisplays() {
    std::vector<DisplayInfo> displays;
    DeviceReporter::GetDisplayInfo(displays);
    return displays;
}

void InstantDisplays(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    benchmarks::InstantMachine().world().machine.display = benchmarks::SampleDisplay(count);
    if (ReadDisplays().size() != count || benchmarks::WalkDisplays() != count) {
        throw std::runtime_error("a walk did not find all displays");
    }
    benchmarks::RunPaired(state, Rounds(ReadDisplays), Rounds(benchmarks::WalkDisplays),
                          kRounds * static_cast<double>(count));
}
BENCHMARK(InstantDisplays)->Apply(benchmarks::Repeat)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->Arg(16);

std::vector<DeviceInfo> ReadPrinters() {
    std::vector<DeviceInfo> printers;
    std::unique_ptr<BYTE[]> list;
    DWORD count = 0;
    DeviceReporter::EnumPrinterList(list, count);
    DeviceReporter::ParsePrinters(list.get(), count, printers);
    return printers;
}

void InstantPrinters(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    benchmarks::InstantMachine().world().machine.printers = benchmarks::SamplePrinters(count);
    if (ReadPrinters().size() != count) {
        throw std::runtime_error("not all printers were read");
    }
    benchmarks::RunPaired(state, Rounds(ReadPrinters), Rounds(benchmarks::WalkPrinters),
                          kRounds * static_cast<double>(count));
}
BENCHMARK(InstantPrinters)->Apply(benchmarks::Repeat)->Arg(1)->Arg(4)->Arg(16)->Arg(64);

std::size_t ReportEcLog() {
    ReportECLogInfo();
    return benchmarks::EventBytes();
}

void InstantFirmwareEvent(benchmark::State& state) {
    const std::size_t before = ReportEcLog();
    if (ReportEcLog() - before != 4 * 253) {
        throw std::runtime_error("the log was not reported");
    }
    benchmarks::RunPaired(state, Rounds(ReportEcLog), Rounds(benchmarks::AskEcLog), kRounds);
}
BENCHMARK(InstantFirmwareEvent)->Apply(benchmarks::Repeat);

}  // namespace
