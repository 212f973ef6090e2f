// The built plug-in in this process, ready to be started.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "simulation/simulated_machine.h"
#include "support/loop_wait_probe.h"
#include "support/plugin_module.h"
#include "support/recorded_suite.h"
#include "util/scoped_handle.h"

inline constexpr char kLoopLine[] =
    "log 3 BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";
inline constexpr char kNoWindowAtStop[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::StopMonitorDevices)";
inline constexpr char kBiosStamp[] = "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:BiosReportTime";
inline constexpr char kDeviceCount[] =
    "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";

std::string RegisterLine(int hours);

/// Demands at its end that nothing keeps the library mapped.
struct UnloadCheck {
    ~UnloadCheck() { EXPECT_FALSE(test_support::IsLoaded(L"TallyportPlugin.dll")); }
};

/// Ann sits at the console and uses the optimisation component, version 1.2.3.4; she has both
/// switches off. Each test loads the library anew and unloads it again.
class RunningPlugin : public testing::Test {
protected:
    RunningPlugin();
    /// Stops the plug-in if the test did not, and demands that the library is unloaded then.
    ~RunningPlugin() override;

    /// Starts and waits until the timer loop waits: a Stop before that takes a whole tick.
    void Start();
    void Stop();
    bool LoopThreadHasEnded() const;
    /// What happened on the test's own thread.
    std::vector<std::string> TextsOfThisThread() const;

    test_support::RecordedSuite suite;
    const test_support::PluginsManager manager;
    UnloadCheck unloadCheck;  ///< Takes place when the members below are gone.
    test_support::PluginModule module;
    test_support::LoopWaitProbe loop{module.Handle()};
    simulation::SimulatedMachine machine;
    std::shared_ptr<ZedPlugin> plugin = module.Create(manager);

private:
    bool running = false;
    ScopedKernelHandle loopThread;
};
