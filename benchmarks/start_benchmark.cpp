// Start of the built library, with everything that it asks answered at once; its threads are real.
#include <windows.h>

#include <memory>
#include <stdexcept>
#include <thread>

#include "instant/instant_calls.h"
#include "paired.h"
#include "support/loop_wait_probe.h"
#include "support/plugin_module.h"

namespace {

const test_support::PluginsManager& Manager() {
    static const test_support::PluginsManager manager;
    return manager;
}

template <class Condition>
void WaitUntil(Condition condition) {
    for (int i = 0; !condition(); ++i) {
        if (i == 10000) {
            throw std::runtime_error("the plug-in does not come to its end");
        }
        Sleep(1);
    }
}

/// Loads the library, since it starts once, and times its Start.
double TimeStart() {
    // Before the library, which registers with it and does not keep it.
    const test_support::PluginsManager& manager = Manager();
    const unsigned before = benchmarks::EndedMonitors();
    double seconds = 0;
    {
        const test_support::PluginModule module;
        simulation::ImportRedirection redirection(module.Handle());
        benchmarks::PutInstantSuite(redirection);
        benchmarks::PutInstantDevices(redirection);
        benchmarks::PutInstantWindow(redirection);
        benchmarks::PutInstantLogon(redirection);
        const test_support::LoopWaitProbe loop(module.Handle());
        const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
        const auto start = [&plugin] { return plugin->Start(); };
        seconds = benchmarks::Time(start);
        WaitUntil([&loop] { return loop.LoopWaits(); });
        // The monitor's thread would go on with the real system's answers.
        WaitUntil([before] { return benchmarks::EndedMonitors() > before; });
        plugin->Stop();
    }
    WaitUntil([] { return !test_support::IsLoaded(L"TallyportPlugin.dll"); });
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
    TimeStart();
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
