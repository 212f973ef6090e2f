// short_edid_probe SIZE: lets the device list of the built plug-in become due on a machine whose
// only monitor has an EDID of SIZE bytes. Tells on standard output how far it came.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "library/device_monitor/passing_hours.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "support/monitor_window.h"
#include "support/plugin_module.h"
#include "support/recorded_suite.h"
#include "unit/device_reporter/sample_displays.h"

namespace {

constexpr int kSurvived = 42;

void Tell(const char* line) {
    std::printf("%s\n", line);
    std::fflush(stdout);
}

simulation::Machine MachineWithEdidOf(std::size_t size) {
    simulation::Machine machine;
    machine.clocks.steadyNanoseconds = 5'000'000'000;
    machine.display.paths = {device_tests::SampleDisplay(1)};
    machine.display.paths[0].edid = device_tests::SampleEdid(size);
    return machine;
}

/// The list is asked for at the end of the last hour.
void PassADay(device_monitor_test::PassingHours& hours) {
    for (int hour = 1; hour <= 24; ++hour) {
        if (hour == 24) {
            Tell("the list is due");
        }
        if (!hours.PassTick()) {
            Tell("the loop does not wait");
        }
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        Tell("usage: short_edid_probe SIZE");
        return 2;
    }
    test_support::RecordedSuite suite;
    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
    simulation::SimulatedMachine machine(
        module.Handle(),
        MachineWithEdidOf(std::strtoul(arguments[1], /*endptr=*/nullptr, /*base=*/10)));
    device_monitor_test::PassingHours hours(module.Handle(), machine.world());
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    ConsentStore_SetAnswer("1");
    const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
    plugin->Start();
    Tell(test_support::MonitorHandlesMessages() ? "monitoring" : "there is no monitor");
    PassADay(hours);
    Tell(suite.timeline.WaitFor("event 992614533", 1, std::chrono::seconds(10)) ? "sent"
                                                                                : "not sent");
    std::_Exit(kSurvived);
}
