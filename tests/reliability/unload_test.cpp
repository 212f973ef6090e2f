// The library let go by its host while the plug-in still works.
#include <windows.h>
#include <gtest/gtest.h>
#include <setupapi.h>
#include <winspool.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>

#include "faults/loaded_plugin.h"
#include "library/device_monitor/passing_hours.h"
#include "reliability/options.h"
#include "simulation/device_happenings.h"
#include "simulation/fakes/threads.h"
#include "support/child_process.h"
#include "support/comes_true.h"

namespace {

using namespace reliability_test;

constexpr unsigned kRoundsOfEach = 10;

HANDLE reached = nullptr;
HANDLE mayGoOn = nullptr;

/// Stands before a call of the system and holds the thread that makes it.
template <auto function>
struct Held;
template <class Result, class... Arguments, Result (*function)(Arguments...)>
struct Held<function> {
    static Result Call(Arguments... arguments) {
        SetEvent(reached);
        test_support::WaitForSignal(mayGoOn);
        return real(arguments...);
    }
    static void Install(simulation::ImportRedirection& redirection, const char* name) {
        real = redirection.Redirect<Result(Arguments...)>(name, &Call);
    }
    static inline Result (*real)(Arguments...) = nullptr;
};

/// Where the monitor is held when Stop comes.
struct Place {
    const char* name;
    bool isInReport;  ///< Else while it fills its map.
    void (*install)(simulation::ImportRedirection& redirection, const char* name);
};

const Place kPlaces[] = {
    {"SetupDiGetClassDevsW", false, &Held<&::SetupDiGetClassDevsW>::Install},
    {"SetupDiEnumDeviceInfo", false, &Held<&::SetupDiEnumDeviceInfo>::Install},
    {"SetupDiDestroyDeviceInfoList", false, &Held<&::SetupDiDestroyDeviceInfoList>::Install},
    {"CreateFileW", false, &Held<&::CreateFileW>::Install},
    {"EnumPrintersW", true, &Held<&::EnumPrintersW>::Install},
    {"ClosePrinter", true, &Held<&::ClosePrinter>::Install},
    {"QueryDisplayConfig", true, &Held<&::QueryDisplayConfig>::Install},
    {"RegCloseKey", true, &Held<&::RegCloseKey>::Install},
};

/// One life in which Stop and the host's FreeLibrary come while the monitor is held.
class InterruptedLife {
public:
    /// Empty when it ended as it has to.
    std::string Live(const Place& place) {
        std::string complaint;
        std::optional<device_monitor_test::PassingHours> hours;
        hours.emplace(life.Module(), life.World());
        {
            simulation::ImportRedirection redirection(life.Module());
            const auto hold = [&] { place.install(redirection, place.name); };
            life.Plugin().Start();
            hours->LoopWaits();
            if (!place.isInReport) {
                hold();
            }
            life.LetMonitorGo();
            if (place.isInReport) {
                life.MonitorListens();
                hold();
                life.World().clock.Advance(std::chrono::hours(24));
                hours->PassTick();
            }
            if (!test_support::WaitForSignal(reached)) {
                complaint += "the monitor makes no such call; ";
            }
            life.Plugin().Stop();
            // The thread is beyond its import by now; there will be nothing to restore later.
        }
        hours.reset();
        if (life.Release()) {
            complaint += "the code is gone from under the monitor; ";
        }
        SetEvent(mayGoOn);
        const bool unmapped = test_support::ComesTrue([this] { return !life.IsMapped(); });
        complaint += unmapped ? "" : "the library stays mapped; ";
        complaint += life.Complaint();
        const std::size_t lists = life.suite.recorded.timeline.Count("event 992614533");
        complaint += lists == (place.isInReport ? 1u : 0u)
                         ? ""
                         : std::to_string(lists) + " events of the list; ";
        return complaint;
    }

private:
    faults_test::LoadedPlugin life;
};

TEST(UnloadRightAfterStop, LetsTheMonitorFinishAndLeavesNothing) {
    unsigned tried = 0;
    unsigned wrong = 0;
    for (const Place& place : kPlaces) {
        for (unsigned round = 0; round < kRoundsOfEach; ++round) {
            reached = CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr);
            mayGoOn = CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr);
            const std::string complaint = InterruptedLife().Live(place);
            CloseHandle(reached);
            CloseHandle(mayGoOn);
            ++tried;
            if (!complaint.empty()) {
                ++wrong;
                ADD_FAILURE() << place.name << ", round " << round << ": " << complaint;
            }
        }
    }
    AddRow("unloads right after Stop, the monitor held in a fill or a report", tried, wrong);
}

TEST(UnloadWithoutStop, KeepsTheCodeForItsThreadsAndTheExitCode) {
    constexpr unsigned kTries = 12;
    unsigned wrong = 0;
    for (unsigned i = 0; i < kTries; ++i) {
        const wchar_t* const scenario =
            i % 2 == 0 ? L"unload-without-stop" : L"unload-with-devices-without-stop";
        const test_support::ChildResult child = test_support::RunChild(
            test_support::ProgramFolder() + L"\\lifecycle_probe.exe", {scenario});
        if (!child.finished || child.exitCode != 42 ||
            child.output.find("mapped") == std::string::npos ||
            child.output.find("there is no monitor") != std::string::npos) {
            ++wrong;
            ADD_FAILURE() << "exit code " << child.exitCode << (child.finished ? "" : ", it hangs")
                          << "; " << child.output;
        }
    }
    AddRow("unloads without Stop", kTries, wrong);
}

}  // namespace
