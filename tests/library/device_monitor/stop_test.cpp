// Stop while the monitor is busy.
#include <windows.h>
#include <gtest/gtest.h>
#include <winspool.h>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/import_redirection.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;

HANDLE reporting = nullptr;
HANDLE mayGoOn = nullptr;
decltype(::EnumPrintersW)* listPrinters = nullptr;

/// Holds the monitor's thread inside its report, with nothing locked that other threads need.
BOOL WINAPI HeldEnumPrintersW(DWORD flags, wchar_t* name, DWORD level, BYTE* printers, DWORD size,
                              DWORD* needed, DWORD* returned) {
    SetEvent(reporting);
    test_support::WaitForSignal(mayGoOn);
    return listPrinters(flags, name, level, printers, size, needed, returned);
}

class StopDuringAReport : public MonitoredPlugin {
protected:
    StopDuringAReport() {
        reporting = begun.Get();
        mayGoOn = permission.Get();
        listPrinters =
            redirection.Redirect<decltype(::EnumPrintersW)>("EnumPrintersW", &HeldEnumPrintersW);
    }

    /// The hour in which the list is due, without waiting for the monitor.
    void BeginReport() {
        Start();
        PassHours(23);
        ASSERT_TRUE(hours.PassTick());
        ASSERT_TRUE(test_support::WaitForSignal(reporting));
    }

private:
    const ScopedKernelHandle begun{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    const ScopedKernelHandle permission{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    simulation::ImportRedirection redirection{module.Handle()};
};

TEST_F(StopDuringAReport, DoesNotWaitForItAndItIsFinishedWithTheLibraryMapped) {
    BeginReport();
    EXPECT_TRUE(plugin->Stop());
    EXPECT_EQ(World().ledger.CountOpen(simulation::ResourceKind::ModuleReference), 1u);
    EXPECT_EQ(Timeline().Count(kListEvent), 0u);
    EXPECT_NE(test_support::FindMonitorWindow(), nullptr);
    SetEvent(mayGoOn);
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    EXPECT_EQ(suite.registry.Value(kCountValue), 1);
    EXPECT_EQ(World().ledger.CountOpen(simulation::ResourceKind::ModuleReference), 0u);
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
}

TEST_F(StopDuringAReport, OfTheTenthListAsksTwiceToCloseAndClosesOnce) {
    suite.registry.SetValue(kCountValue, 9);
    BeginReport();
    EXPECT_TRUE(plugin->Stop());
    SetEvent(mayGoOn);
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(suite.registry.Value(kCountValue), 10);
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 1u);
    EXPECT_EQ(Journal().Count("UnregisterDeviceNotification"), 1u);
}

}  // namespace
