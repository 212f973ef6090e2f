// Sixty days of the built library on the fast clock, in which nothing happens but its own reports.
// Prints one sample in the form of Google Benchmark.
#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "platform/file_kit.h"
#include "report/data_report_time.h"
#include "simulation/import_redirection.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/log_kit/log_kit_control.h"
#include "support/plugin_module.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::hours kSpan{60 * 24};
/// How often a wait with a time limit, however short, ended on this thread.
thread_local unsigned wakesOfThread = 0;
/// How often the hourly callback ran, and how often its thread had woken by then.
std::atomic<unsigned> ticks{0};
std::atomic<unsigned> wakes{0};

decltype(::WaitForSingleObject)* realWaitForSingleObject = nullptr;
decltype(::WaitForMultipleObjects)* realWaitForMultipleObjects = nullptr;
decltype(::Sleep)* realSleep = nullptr;
decltype(::PostMessageW)* realPostMessage = nullptr;

void CountWake(DWORD milliseconds) {
    wakesOfThread += milliseconds != 0 && milliseconds != INFINITE ? 1 : 0;
}

DWORD WINAPI CountedWaitForSingleObject(HANDLE object, DWORD milliseconds) {
    CountWake(milliseconds);
    return realWaitForSingleObject(object, milliseconds);
}

DWORD WINAPI CountedWaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all,
                                           DWORD milliseconds) {
    CountWake(milliseconds);
    return realWaitForMultipleObjects(count, objects, all, milliseconds);
}

void WINAPI CountedSleep(DWORD milliseconds) {
    CountWake(milliseconds);
    realSleep(milliseconds);
}

/// The hourly callback posts its request; the monitor, when it is done for good, its end.
BOOL WINAPI CountedPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_CLOSE) {
        ++ticks;
        wakes = wakesOfThread;
    }
    return realPostMessage(window, message, wParam, lParam);
}

template <class Function>
void Watch(simulation::ImportRedirection& redirection, const char* name, Function* replacement,
           Function*& real) {
    real = redirection.Redirect<Function>(name, replacement);
}

double CpuSeconds() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME times[2] = {};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &times[0], &times[1]);
    double seconds = 0;
    for (const FILETIME& time : times) {
        seconds += (time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) / 1e7;
    }
    return seconds;
}

}  // namespace

int main() {
    LogKit_SetConsole(0);
    // What an earlier run in this Wine prefix left: with ten lists sent there is no hourly report.
    QD::Registry::SetValue(HKEY_LOCAL_MACHINE, kDataReportTimeKey, L"ReportDevicesCount",
                           std::int32_t{0}, KEY_ALL_ACCESS);
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    ConsentStore_SetAnswer("1");
    const test_support::PluginsManager manager;
    const test_support::PluginModule module;
    simulation::ImportRedirection redirection(module.Handle());
    Watch(redirection, "WaitForSingleObject", &CountedWaitForSingleObject, realWaitForSingleObject);
    Watch(redirection, "WaitForMultipleObjects", &CountedWaitForMultipleObjects,
          realWaitForMultipleObjects);
    Watch(redirection, "Sleep", &CountedSleep, realSleep);
    Watch(redirection, "PostMessageW", &CountedPostMessage, realPostMessage);
    const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
    const double cpuBefore = CpuSeconds();
    const Clock::time_point begin = Clock::now();
    plugin->Start();
    std::this_thread::sleep_until(begin + kSpan);
    const unsigned ticksDone = ticks;
    const unsigned wakesDone = wakes;
    if (ticksDone == 0) {
        std::fputs("idle_days: the hourly callback never ran\n", stderr);
        TerminateProcess(GetCurrentProcess(), 1);
    }
    const double days = std::chrono::duration<double>(Clock::now() - begin).count() / (24.0 * 3600);
    std::printf(
        "{\"benchmarks\": [{\"name\": \"IdleDays\", \"run_type\": \"iteration\", "
        "\"ratio\": %f, \"wakes\": %u, \"ticks\": %u, \"days\": %f, \"cpu_seconds\": %f}]}\n",
        static_cast<double>(wakesDone) / ticksDone, wakesDone, ticksDone, days,
        CpuSeconds() - cpuBefore);
    std::fflush(stdout);
    // Waiting for the loop would take until its next tick.
    TerminateProcess(GetCurrentProcess(), 0);
}
