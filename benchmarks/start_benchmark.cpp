// Start of the built library, with everything that it asks answered at once; its threads are real.
#include <windows.h>

#include <memory>
#include <stdexcept>
#include <thread>

#include "instant_system.h"
#include "paired.h"
#include "simulation/fakes/threads.h"
#include "support/comes_true.h"
#include "support/loop_wait_probe.h"
#include "support/plugin_module.h"

namespace {

const test_support::PluginsManager& Manager() {
    static const test_support::PluginsManager manager;
    return manager;
}

void Require(bool holds) {
    if (!holds) {
        throw std::runtime_error("the plug-in does not come to its end");
    }
}

/// A user is at the console and has the optimisation component.
simulation::Machine MachineWithUser() {
    simulation::Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"PC\\ann"}};
    machine.logons.accounts[L"PC\\ann"] = L"S-1-5-21-1004336348-1177238915-682003330-1001";
    machine
        .fileVersions
            [L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\"
             L"TuneBoostCenter.exe"]
        .product = {12, 0, 3, 105};
    return machine;
}

/// Loads the library, since it starts once, and times its Start.
double TimeStart() {
    // Before the library, which registers with it and does not keep it.
    const test_support::PluginsManager& manager = Manager();
    double seconds = 0;
    {
        const test_support::PluginModule module;
        simulation::SimulatedMachine machine(module.Handle(), MachineWithUser());
        machine.world().journal.Stop();
        // The monitor's thread ends at once: what it does next to Start is not Start's.
        machine.world().faults.FailEveryCall("RegisterClassW", ERROR_NOT_ENOUGH_MEMORY);
        const test_support::LoopWaitProbe loop(module.Handle());
        const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
        const auto start = [&plugin] { return plugin->Start(); };
        seconds = benchmarks::Time(start);
        Require(loop.LoopWaits());
        Require(simulation::WaitForThreads(machine.world(), test_support::kPatience));
        plugin->Stop();
    }
    Require(
        test_support::ComesTrue([] { return !test_support::IsLoaded(L"TallyportPlugin.dll"); }));
    return seconds;
}

DWORD WINAPI EmptyThread(void*) { return 0; }

/// Two threads, one made by the standard library and one by the system as the plug-in's are, and
/// three registry values.
double TimeFloor() {
    std::thread first;
    HANDLE second = nullptr;
    const auto work = [&] {
        for (const wchar_t* name : {L"CurrentBuild", L"CurrentVersion", L"ProductName"}) {
            wchar_t text[100];
            DWORD size = sizeof(text);
            RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
                         name, RRF_RT_REG_SZ, nullptr, text, &size);
        }
        second = CreateThread(nullptr, 0, &EmptyThread, nullptr, 0, nullptr);
        first = std::thread([] {});
        return second != nullptr;
    };
    const double seconds = benchmarks::Time(work);
    first.join();
    WaitForSingleObject(second, INFINITE);
    CloseHandle(second);
    return seconds;
}

void Start(benchmark::State& state) { benchmarks::RunPairedSeconds(state, TimeStart, TimeFloor); }
BENCHMARK(Start)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(30)->Repetitions(11);

}  // namespace

int main(int argumentCount, char** arguments) {
    benchmarks::UseInstantSuite();
    TimeStart();
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
