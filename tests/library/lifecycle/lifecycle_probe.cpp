// Drives the built plug-in through one of the scenarios below and then ends the process in the way
// that the scenario is about. Tells on standard output how far it came.
#include <windows.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "simulation/import_redirection.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "support/comes_true.h"
#include "support/loop_wait_probe.h"
#include "support/monitor_window.h"
#include "support/plugin_module.h"
#include "support/recorded_suite.h"

namespace {

using test_support::LoopWaitProbe;
using test_support::PluginModule;
using test_support::PluginsManager;

constexpr int kExitCode = 42;

void Tell(const char* line) {
    std::printf("%s\n", line);
    std::fflush(stdout);
}

/// The process ends with it alive, unless a scenario unloads the plug-in.
struct Session {
    test_support::RecordedSuite suite;
    PluginsManager manager;
    PluginModule module;
    std::shared_ptr<ZedPlugin> plugin = module.Create(manager);

    /// Starts the plug-in and waits until its timer loop waits.
    void Start() {
        const LoopWaitProbe loop(module.Handle());
        plugin->Start();
        Tell(loop.LoopWaits() ? "started" : "the loop does not wait");
    }

    void StartWithDevices() {
        EditionAdapt_SetFeature("ReportDeviceList", 3);
        Start();
        Tell(test_support::MonitorHandlesMessages() ? "monitoring" : "there is no monitor");
    }

    void Unload() {
        plugin.reset();
        module.Unload();
    }
};

/// Never destroyed.
Session& NewSession() { return *new Session; }

void ExitAfterStart() { NewSession().Start(); }

void ExitWithDevices() { NewSession().StartWithDevices(); }

void ExitAtOnce() {
    NewSession().plugin->Start();
    ExitProcess(kExitCode);
}

void ExitAfterStop() {
    Session& session = NewSession();
    session.Start();
    session.plugin->Stop();
}

void TellWhetherMapped() {
    Tell(test_support::IsLoaded(L"TallyportPlugin.dll") ? "mapped" : "gone");
}

void UnloadWithoutStop() {
    Session& session = NewSession();
    session.Start();
    session.Unload();
    TellWhetherMapped();
}

void UnloadWithDevicesWithoutStop() {
    Session& session = NewSession();
    session.StartWithDevices();
    session.Unload();
    TellWhetherMapped();
    Tell(test_support::MonitorHandlesMessages() ? "still monitoring" : "there is no monitor");
}

HANDLE mayRegister = nullptr;

ATOM WINAPI HeldRegisterClass(const WNDCLASSW* windowClass) {
    WaitForSingleObject(mayRegister, INFINITE);
    return RegisterClassW(windowClass);
}

void StopBeforeTheMonitorHasItsWindow() {
    Session& session = NewSession();
    mayRegister = CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr);
    // Never put back, as the session.
    auto* const imports = new simulation::ImportRedirection(session.module.Handle());
    imports->Redirect<decltype(::RegisterClassW)>("RegisterClassW", HeldRegisterClass);
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    session.Start();
    session.plugin->Stop();
    SetEvent(mayRegister);
    Tell(test_support::MonitorHandlesMessages() ? "monitoring" : "there is no monitor");
    session.Unload();
    TellWhetherMapped();
}

/// The monitor thread is still closing its window when the host lets go of the library.
void UnloadRightAfterStopWithDevices() {
    for (int round = 0; round < 3; ++round) {
        Session session;
        session.StartWithDevices();
        session.plugin->Stop();
        session.Unload();
        test_support::ComesTrue([] { return !test_support::IsLoaded(L"TallyportPlugin.dll"); });
        TellWhetherMapped();
    }
}

void SecondStart() {
    Session& session = NewSession();
    session.Start();
    session.plugin->Start();
    Tell("survived");
}

const std::map<std::string, void (*)()> scenarios{
    {"exit-after-start", &ExitAfterStart},
    {"exit-with-devices", &ExitWithDevices},
    {"exit-at-once", &ExitAtOnce},
    {"exit-after-stop", &ExitAfterStop},
    {"unload-without-stop", &UnloadWithoutStop},
    {"unload-with-devices-without-stop", &UnloadWithDevicesWithoutStop},
    {"unload-right-after-stop-with-devices", &UnloadRightAfterStopWithDevices},
    {"stop-before-the-window", &StopBeforeTheMonitorHasItsWindow},
    {"second-start", &SecondStart},
};

}  // namespace

int main(int argumentCount, char** arguments) {
    const auto scenario = scenarios.find(argumentCount == 2 ? arguments[1] : "");
    if (scenario == scenarios.end()) {
        Tell("unknown scenario");
        return 2;
    }
    scenario->second();
    return kExitCode;
}
