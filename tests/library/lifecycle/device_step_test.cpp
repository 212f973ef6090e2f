// The part of Start that sets up the device reports.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "library/lifecycle/running_plugin.h"
#include "simulation/import_redirection.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "support/monitor_window.h"

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using Texts = std::vector<std::string>;

constexpr char kReadCount[] =
    "read int32 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount mask 0xF003F";
constexpr char kNoThread[] =
    "log 3 failed to create monitor thread, lastError = 8("
    "DeviceReporter::ReportDeviceInfo::StartMonitorDevices)";
constexpr char kSubscribed[] = "BiosEventMonitor::StartEventMonitor";

struct ThreadWatch {
    test_support::Timeline* timeline;
    DWORD error;    ///< Not 0: the thread is refused.
    HANDLE handle;  ///< What the plug-in got.
    ScopedKernelHandle copy;
    bool plainArguments;  ///< Default security and stack, no flags, no id asked for.
};
ThreadWatch watch;
decltype(::CreateThread)* realCreateThread = nullptr;
decltype(::CloseHandle)* realCloseHandle = nullptr;

HANDLE WINAPI WatchedCreateThread(SECURITY_ATTRIBUTES* security, SIZE_T stackSize,
                                  LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags,
                                  DWORD* threadId) {
    watch.timeline->Note("CreateThread");
    watch.plainArguments =
        security == nullptr && stackSize == 0 && flags == 0 && threadId == nullptr;
    if (watch.error != 0) {
        SetLastError(watch.error);
        return nullptr;
    }
    watch.handle = realCreateThread(security, stackSize, start, parameter, flags, threadId);
    DuplicateHandle(GetCurrentProcess(), watch.handle, GetCurrentProcess(), watch.copy.Receive(),
                    SYNCHRONIZE, /*bInheritHandle=*/FALSE, /*dwOptions=*/0);
    return watch.handle;
}

BOOL WINAPI WatchedCloseHandle(HANDLE handle) {
    if (handle == watch.handle) {
        watch.timeline->Note("CloseHandle of the thread");
        watch.handle = nullptr;
    }
    return realCloseHandle(handle);
}

/// On a machine that reports devices.
class DeviceStep : public RunningPlugin {
protected:
    DeviceStep() {
        EditionAdapt_SetFeature("ReportDeviceList", 3);
        suite.registry.SetValue(kDeviceCount, 0);
        watch = {&suite.timeline, 0, nullptr, ScopedKernelHandle(), false};
        realCreateThread =
            redirection.Redirect<decltype(::CreateThread)>("CreateThread", WatchedCreateThread);
        realCloseHandle =
            redirection.Redirect<decltype(::CloseHandle)>("CloseHandle", WatchedCloseHandle);
    }
    ~DeviceStep() override {
        Stop();
        if (watch.copy) {
            // The monitor thread is not waited for by Stop, but its calls go through the module's
            // import table, which is put back now.
            EXPECT_EQ(WaitForSingleObject(watch.copy.Get(), 10'000), WAIT_OBJECT_0);
            watch.copy.Reset();
        }
    }

    /// Starts; what the host's thread does behind the optimisation report.
    Texts StartAndTell() {
        Start();
        const Texts all = TextsOfThisThread();
        return {std::find(all.begin(), all.end(), "event 992614518") + 1, all.end()};
    }

    void ExpectTick(hours tick) { EXPECT_EQ(std::chrono::round<minutes>(loop.LatestWait()), tick); }

    simulation::ImportRedirection redirection{module.Handle()};
};

const Texts kSetUp{kReadCount, "CreateThread", "CloseHandle of the thread", RegisterLine(1),
                   kSubscribed};

TEST_F(DeviceStep, CreatesTheMonitorThreadAndRegistersTheHourlyReport) {
    EXPECT_EQ(StartAndTell(), kSetUp);
    EXPECT_TRUE(watch.plainArguments);
    ExpectTick(hours(1));
    EXPECT_TRUE(test_support::MonitorHandlesMessages());
}

TEST_F(DeviceStep, DoesNotReportDevicesAtOnce) {
    Start();
    EXPECT_TRUE(test_support::MonitorHandlesMessages());
    EXPECT_TRUE(suite.events.WithId(992614533).empty());
    EXPECT_EQ(suite.timeline.Count("log 3 msgWindow is null("
                                   "DeviceReporter::ReportDeviceInfo::ReportDevices)"),
              0u);
}

TEST_F(DeviceStep, IsTakenWhenNineListsWereSent) {
    suite.registry.SetValue(kDeviceCount, 9);
    EXPECT_EQ(StartAndTell(), kSetUp);
    EXPECT_TRUE(test_support::MonitorHandlesMessages());
}

TEST_F(DeviceStep, IsTakenWhenTheCountCannotBeRead) {
    suite.registry.FailReads(kDeviceCount, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(
        StartAndTell(),
        (Texts{kReadCount, "log 3 failed to read reg(`anonymous-namespace'::ReadReportCountReg)",
               "CreateThread", "CloseHandle of the thread", RegisterLine(1), kSubscribed}));
    EXPECT_TRUE(test_support::MonitorHandlesMessages());
}

TEST_F(DeviceStep, IsSkippedWhenTenListsWereSent) {
    suite.registry.SetValue(kDeviceCount, 10);
    EXPECT_EQ(StartAndTell(), (Texts{kReadCount, kSubscribed}));
    ExpectTick(hours(12));
}

TEST_F(DeviceStep, IsSkippedWhenMoreThanTenListsWereSent) {
    suite.registry.SetValue(kDeviceCount, 11);
    EXPECT_EQ(StartAndTell(), (Texts{kReadCount, kSubscribed}));
}

TEST_F(DeviceStep, IsSkippedOnAMachineThatDoesNotReportDevices) {
    EditionAdapt_SetFeature("ReportDeviceList", 2);
    EXPECT_EQ(StartAndTell(),
              (Texts{"log 3 machine type not support(DeviceReporter::ReportDeviceInfo::Init)",
                     kSubscribed}));
    ExpectTick(hours(12));
}

TEST_F(DeviceStep, RegistersTheHourlyReportAlsoWhenThereIsNoThread) {
    watch.error = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_EQ(StartAndTell(),
              (Texts{kReadCount, "CreateThread", kNoThread, RegisterLine(1), kSubscribed}));
    ExpectTick(hours(1));
}

TEST_F(DeviceStep, StopClosesTheMonitorsWindow) {
    Start();
    ASSERT_TRUE(test_support::MonitorHandlesMessages());
    Stop();
    EXPECT_EQ(WaitForSingleObject(watch.copy.Get(), 10'000), WAIT_OBJECT_0);
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
}

}  // namespace
