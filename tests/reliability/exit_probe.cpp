// Lives a life of the plug-in and exits in the midst of it, without Stop, on another thread than
// those that work, which go on until the exit ends them:
//
//     exit_probe CODE        when Stop is over; prints how many calls of others the plug-in made
//     exit_probe CODE NTH    when the plug-in makes its NTH call
#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "faults/loaded_plugin.h"
#include "library/device_monitor/passing_hours.h"
#include "reliability/counted_calls.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace {

using namespace reliability_test;

constexpr UINT kTakenDown = 9;

/// At the end of the process nothing may be done to what its terminated threads were busy with.
void TellThatItIsTakenDown(simulation::World& /*world*/) {
    TerminateProcess(GetCurrentProcess(), kTakenDown);
}

/// Never destroyed.
struct Life {
    faults_test::LoadedPlugin plugin{&TellThatItIsTakenDown};

    /// On a thread of the host's.
    void Live() {
        device_monitor_test::PassingHours& hours =
            *new device_monitor_test::PassingHours(plugin.Module(), plugin.World());
        CountCalls(plugin.Module());
        plugin.LetMonitorGo();
        plugin.Plugin().Start();
        hours.LoopWaits();
        plugin.MonitorListens();
        simulation::PlugDevice(plugin.World(), plugin.scenario.scene.arriving);
        plugin.World().clock.Advance(std::chrono::hours(24));
        hours.PassTick();
        WmiKit_FireFirmwareEvent(675);
        plugin.Plugin().Stop();
        simulation::WaitForThreads(plugin.World(), test_support::kPatience);
    }
};

bool IsUsedAtDetach(const std::string& library) {
    for (const char* const used :
         {"KERNEL32.dll", "msvcrt.dll", "api-ms-win-core-path-l1-1-0.dll"}) {
        if (_stricmp(library.c_str(), used) == 0) {
            return true;
        }
    }
    return false;
}

/// Threads that the exit ends may hold locks of the simulation. What the plug-in does when it is
/// detached must not wait for them: it gets the system's own functions back, those of its loader
/// and of the C library. The others are called by these threads only, until they end, and with
/// handles that the system does not know.
void GiveTheSystemBack(HMODULE module) {
    static auto* const original = new simulation::ImportRedirection(module);
    for (const simulation::Import& import : simulation::ImportsOf(module)) {
        if (!IsUsedAtDetach(import.library)) {
            continue;
        }
        const FARPROC function =
            GetProcAddress(GetModuleHandleA(import.library.c_str()), import.name.c_str());
        original->Redirect(import.name, reinterpret_cast<void*>(function));
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2 && argumentCount != 3) {
        std::fputs("usage: exit_probe CODE [NTH]\n", stderr);
        return 2;
    }
    const auto code = static_cast<UINT>(std::strtoul(arguments[1], nullptr, 10));
    const std::uint64_t nth = argumentCount == 3 ? std::strtoull(arguments[2], nullptr, 10) : 0;
    static Life& life = *new Life;
    static std::atomic<bool> over{false};
    // Not a thread of the C++ library: it must leave nothing to do for the exit.
    CloseHandle(CreateThread(
        nullptr, 0,
        [](void*) -> DWORD {
            life.Live();
            over = true;
            Sleep(INFINITE);
            return 0;
        },
        nullptr, 0, nullptr));
    while (!over && (nth == 0 || CallsSoFar() < nth)) {
        YieldProcessor();
    }
    if (nth == 0) {
        std::printf("%llu\n", static_cast<unsigned long long>(CallsSoFar()));
        std::fflush(stdout);
    }
    GiveTheSystemBack(life.plugin.Module());
    std::puts("exits");
    std::fflush(stdout);
    ExitProcess(code);
}
