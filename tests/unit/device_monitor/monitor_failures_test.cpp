// Each call of the monitor thread that can fail.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/device_monitor/monitor_test.h"
#include "unit/device_monitor/running_monitor.h"

namespace {

using namespace device_monitor_test;
using simulation::FaultVariant;
using Texts = std::vector<std::string>;

constexpr char kName[] = "(DeviceReporter::ReportDeviceInfo::MonitorThreadProc)";

class MonitorFailure : public MonitorTest {
protected:
    /// Runs the thread, which is expected to end by itself.
    void RunToItsEnd() {
        RunningMonitor monitor(World(), reporter);
        ASSERT_TRUE(monitor.Ends());
        monitor.Close();
        EXPECT_EQ(monitor.Status(), 0u);
    }
};

TEST_F(MonitorFailure, OfTheClassEndsTheThreadWithItsLine) {
    World().faults.FailCall("RegisterClassW", 1, ERROR_CLASS_ALREADY_EXISTS);
    RunToItsEnd();
    EXPECT_EQ(Timeline().Texts(),
              Texts{std::string("log 3 failed to register DeviceMonitorWnd") + kName});
    EXPECT_EQ(Journal().Count("CreateWindowExW"), 0u);
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 0u);
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
    EXPECT_EQ(Journal().Count("GetMessageW"), 0u);
    EXPECT_EQ(reporter.msgWindow, nullptr);
}

TEST_F(MonitorFailure, OfTheClassLeavesAForeignClassOfThatNameAlone) {
    WNDCLASSW foreign{};
    foreign.lpfnWndProc = DefWindowProcW;
    foreign.hInstance = GetModuleHandleW(nullptr);
    foreign.lpszClassName = L"DeviceMonitorWnd";
    ASSERT_NE(RegisterClassW(&foreign), 0);
    RunToItsEnd();
    EXPECT_EQ(Timeline().Texts(),
              Texts{std::string("log 3 failed to register DeviceMonitorWnd") + kName});
    EXPECT_TRUE(UnregisterClassW(L"DeviceMonitorWnd", GetModuleHandleW(nullptr)));
}

TEST_F(MonitorFailure, OfTheWindowUnregistersTheClassAndEndsTheThreadWithItsLine) {
    World().faults.FailCall("CreateWindowExW", 1, ERROR_NOT_ENOUGH_MEMORY);
    RunToItsEnd();
    EXPECT_EQ(Timeline().Texts(),
              Texts{std::string("log 3 failed to init message only window") + kName});
    EXPECT_EQ(Journal().Count("UnregisterClassW"), 1u);
    EXPECT_EQ(Journal().Count("SetupDiGetClassDevsW"), 0u);
    EXPECT_EQ(Journal().Count("GetMessageW"), 0u);
    EXPECT_EQ(reporter.msgWindow, nullptr);
}

TEST_F(MonitorFailure, OfTheNotificationIsSilentAndNothingIsUnregistered) {
    World().faults.FailCall("RegisterDeviceNotificationW", 1, ERROR_INVALID_DATA);
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    EXPECT_TRUE(IsWindow(reporter.msgWindow));
    EXPECT_EQ(reporter.devNotify, nullptr);
    monitor.Close();
    EXPECT_EQ(Journal().Count("RegisterDeviceNotificationW"), 1u);
    EXPECT_EQ(Journal().Count("UnregisterDeviceNotification"), 0u);
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MonitorFailure, OfTheEnumerationsDoesNotEndTheThread) {
    World().faults.FailEveryCall("SetupDiGetClassDevsW", ERROR_ACCESS_DENIED);
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    EXPECT_EQ(Timeline().Texts(), (Texts{"log 3 fail to get class devs, lastError = "
                                         "5(DeviceReporter::AddDeviceInterfaceToMap)",
                                         "log 3 fail to get class devs, lastError = "
                                         "5(DeviceReporter::AddAllDevicesToMap)"}));
    EXPECT_TRUE(IsWindow(reporter.msgWindow));
}

TEST_F(MonitorFailure, OfUnregisteringTheNotificationForgetsItAllTheSame) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    World().faults.FailCall("UnregisterDeviceNotification", 1, ERROR_INVALID_HANDLE);
    const HDEVNOTIFY notification = reporter.devNotify;
    monitor.Close();
    EXPECT_EQ(reporter.devNotify, nullptr);
    EXPECT_TRUE(Timeline().Texts().empty());
    UnregisterDeviceNotification(notification);  // As the failure was only played.
}

TEST_F(MonitorFailure, OfUnregisteringTheClassIsSilent) {
    World().faults.FailCall("UnregisterClassW", 1, ERROR_CLASS_HAS_WINDOWS);
    RunningMonitor monitor(World(), reporter);
    monitor.Close();
    EXPECT_EQ(monitor.Status(), 0u);
    EXPECT_TRUE(Timeline().Texts().empty());
    // As the failure was only played.
    EXPECT_TRUE(UnregisterClassW(L"DeviceMonitorWnd", GetModuleHandleW(nullptr)));
}

TEST_F(MonitorFailure, OfPostingIsSilent) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    World().faults.FailCall("PostMessageW", 1, ERROR_NOT_ENOUGH_QUOTA);
    reporter.ReportDevices();
    World().faults.FailCall("PostMessageW", 1, ERROR_NOT_ENOUGH_QUOTA);
    reporter.StopMonitorDevices();
    EXPECT_TRUE(Timeline().Texts().empty());
    EXPECT_TRUE(IsWindow(reporter.msgWindow));
}

}  // namespace
