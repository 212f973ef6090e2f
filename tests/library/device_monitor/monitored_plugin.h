// The built plug-in with its device monitor, on a simulated machine whose hours pass at command.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "library/device_monitor/passing_hours.h"
#include "simulation/simulated_machine.h"
#include "support/comes_true.h"
#include "support/plugin_module.h"
#include "support/recorded_suite.h"

namespace device_monitor_test {

inline constexpr int kListEventId = 992614533;
inline constexpr char kListEvent[] = "event 992614533";
inline constexpr char kListLine[] =
    "log 3 Peripheral list(DeviceReporter::ReportDeviceInfo::DoReportDevices)";
inline constexpr char kTickWithoutWindow[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::ReportDevices)";
inline constexpr char kStopWithoutWindow[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::StopMonitorDevices)";
inline constexpr char kCountValue[] =
    "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";

using test_support::ComesTrue;

/// A USB device of this id with one interface of the USB device class.
simulation::Device UsbDevice(const std::wstring& instanceId, bool removable);

/// A machine that reports devices, with one removable device, no printer and no display. Nothing
/// was sent before and the user has agreed. Each test loads the library anew; at its end the
/// monitor thread is over and nothing is left open.
class MonitoredPlugin : public testing::Test {
protected:
    MonitoredPlugin();
    ~MonitoredPlugin() override;

    simulation::World& World() { return machine.world(); }
    simulation::CallJournal& Journal() { return World().journal; }
    test_support::Timeline& Timeline() { return suite.timeline; }

    /// Starts; where a monitor is expected, it handles messages when this returns.
    void Start(bool expectMonitor = true);
    /// Stops and, where there is a monitor, waits for the end of its thread.
    void Stop();
    bool MonitorEnds();
    DWORD MonitorThreadId();

    /// One tick after the other; each is dealt with, on the monitor's thread too.
    void PassHours(int hours);

    test_support::RecordedSuite suite;
    const test_support::PluginsManager manager;
    test_support::PluginModule module;
    simulation::SimulatedMachine machine;
    PassingHours hours{module.Handle(), machine.world()};
    std::shared_ptr<ZedPlugin> plugin = module.Create(manager);

private:
    /// Whether each report message that reached the monitor's queue has been handled.
    bool RequestsAreHandled();

    bool running = false;
};

}  // namespace device_monitor_test
