// Hours without a window to post to.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/import_redirection.h"

namespace {

using namespace device_monitor_test;

constexpr char kMonitorName[] = "(DeviceReporter::ReportDeviceInfo::MonitorThreadProc)";

class MissingWindow : public MonitoredPlugin {};

TEST_F(MissingWindow, BecauseThereIsNoThreadShowsAtEachHour) {
    World().faults.FailCall("CreateThread", 1, ERROR_NOT_ENOUGH_MEMORY);
    Start(/*expectMonitor=*/false);
    EXPECT_EQ(Timeline().Count("log 3 failed to create monitor thread, lastError = 8("
                               "DeviceReporter::ReportDeviceInfo::StartMonitorDevices)"),
              1u);
    PassHours(3);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 3u);
    Stop();
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 1u);
}

TEST_F(MissingWindow, BecauseThereIsNoClassShowsAtEachHour) {
    World().faults.FailCall("RegisterClassW", 1, ERROR_NOT_ENOUGH_MEMORY);
    Start(/*expectMonitor=*/false);
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(
        Timeline().Count(std::string("log 3 failed to register DeviceMonitorWnd") + kMonitorName),
        1u);
    PassHours(25);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 25u);
    EXPECT_EQ(Timeline().Count(kListEvent), 0u);
}

TEST_F(MissingWindow, BecauseItCannotBeCreatedShowsAtEachHour) {
    World().faults.FailCall("CreateWindowExW", 1, ERROR_NOT_ENOUGH_MEMORY);
    Start(/*expectMonitor=*/false);
    EXPECT_TRUE(MonitorEnds());
    EXPECT_EQ(
        Timeline().Count(std::string("log 3 failed to init message only window") + kMonitorName),
        1u);
    PassHours(2);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 2u);
}

ScopedKernelHandle mayRegister;
decltype(::RegisterClassW)* nextRegisterClassW = nullptr;

ATOM WINAPI LateRegisterClassW(const WNDCLASSW* windowClass) {
    const ATOM atom = nextRegisterClassW(windowClass);
    WaitForSingleObject(mayRegister.Get(), INFINITE);
    return atom;
}

TEST_F(MissingWindow, ThatComesLateIsUsedFromTheNextHourOn) {
    mayRegister.Reset(CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr));
    simulation::ImportRedirection redirection(module.Handle());
    nextRegisterClassW =
        redirection.Redirect<decltype(::RegisterClassW)>("RegisterClassW", LateRegisterClassW);
    Start(/*expectMonitor=*/false);
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 1u);
    SetEvent(mayRegister.Get());
    ASSERT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") > 0; }));
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 1u);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    Stop();
}

}  // namespace
