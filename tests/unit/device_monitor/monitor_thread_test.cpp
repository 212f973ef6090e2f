// The monitor thread from its first call to its last.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "simulation/call_text.h"
#include "simulation/well_known.h"
#include "unit/device_monitor/monitor_test.h"
#include "unit/device_monitor/running_monitor.h"

namespace {

using namespace device_monitor_test;
using DeviceReporter::ReportDeviceInfo;
using simulation::CallText;
using simulation::JournalEntry;
using Texts = std::vector<std::string>;
using Arguments = std::vector<std::pair<std::string, std::string>>;

Arguments ArgumentsOf(const JournalEntry& call) {
    Arguments arguments;
    for (const simulation::CallArgument& argument : call.arguments) {
        arguments.emplace_back(argument.name, argument.value);
    }
    return arguments;
}

class MonitorThread : public MonitorTest {
protected:
    /// The only call of a function.
    JournalEntry TheCall(const std::string& function) {
        const auto calls = Journal().Calls(function);
        EXPECT_EQ(calls.size(), 1u) << function;
        return calls.empty() ? JournalEntry{} : calls.front();
    }

    /// Those calls that concern class, window, notification and devices, in order.
    Texts Steps() {
        static const Texts kSteps{"RegisterClassW",
                                  "CreateWindowExW",
                                  "RegisterDeviceNotificationW",
                                  "SetupDiGetClassDevsW",
                                  "UnregisterDeviceNotification",
                                  "PostQuitMessage",
                                  "DestroyWindow",
                                  "UnregisterClassW"};
        Texts steps;
        for (const std::string& name : Journal().Names()) {
            if (std::find(kSteps.begin(), kSteps.end(), name) != kSteps.end()) {
                steps.push_back(name);
            }
        }
        return steps;
    }

    /// The host executable's module, as the journal writes it.
    const std::string hostModule = CallText(static_cast<const void*>(GetModuleHandleW(nullptr)));
};

TEST_F(MonitorThread, LogsAMissingObjectAndDoesNothingElse) {
    EXPECT_EQ(ReportDeviceInfo::MonitorThreadProc(nullptr), 0u);
    EXPECT_EQ(Timeline().Texts(),
              Texts{"log 3 object is null(DeviceReporter::ReportDeviceInfo::MonitorThreadProc)"});
    EXPECT_TRUE(Steps().empty());
}

TEST_F(MonitorThread, GoesThroughItsStepsInOrderAndReturns0) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    EXPECT_EQ(Steps(), (Texts{"RegisterClassW", "CreateWindowExW", "RegisterDeviceNotificationW",
                              "SetupDiGetClassDevsW", "SetupDiGetClassDevsW"}));
    Journal().Clear();
    monitor.Close();
    EXPECT_EQ(Steps(),
              (Texts{"UnregisterDeviceNotification", "PostQuitMessage", "UnregisterClassW"}));
    EXPECT_EQ(monitor.Status(), 0u);
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MonitorThread, RegistersItsClassWithProcedureInstanceAndNameOnly) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    WNDCLASSW windowClass{};
    ASSERT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass));
    ASSERT_NE(windowClass.lpfnWndProc, nullptr);
    EXPECT_EQ(ArgumentsOf(TheCall("RegisterClassW")),
              (Arguments{{"style", "0"},
                         {"procedure", CallText(windowClass.lpfnWndProc)},
                         {"classBytes", "0"},
                         {"windowBytes", "0"},
                         {"instance", hostModule},
                         {"icon", "null"},
                         {"cursor", "null"},
                         {"background", "null"},
                         {"menuName", "null"},
                         {"className", "DeviceMonitorWnd"}}));
}

TEST_F(MonitorThread, CreatesAMessageOnlyWindowForTheReporter) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    const JournalEntry call = TheCall("CreateWindowExW");
    EXPECT_EQ(ArgumentsOf(call),
              (Arguments{{"extendedStyle", "0"},
                         {"className", "DeviceMonitorWnd"},
                         {"title", ""},
                         {"style", std::to_string(0x00CF0000)},  // WS_OVERLAPPEDWINDOW
                         {"x", "-2147483648"},                   // CW_USEDEFAULT
                         {"y", "-2147483648"},
                         {"width", "-2147483648"},
                         {"height", "-2147483648"},
                         {"parent", "HWND_MESSAGE"},
                         {"menu", "null"},
                         {"instance", hostModule},
                         {"parameter", CallText(static_cast<const void*>(&reporter))}}));
    EXPECT_EQ(call.result, CallText(static_cast<const void*>(reporter.msgWindow.load())));
}

TEST_F(MonitorThread, UnregistersItsClassForTheSameInstance) {
    RunningMonitor monitor(World(), reporter);
    monitor.Close();
    EXPECT_EQ(ArgumentsOf(TheCall("UnregisterClassW")),
              (Arguments{{"className", "DeviceMonitorWnd"}, {"instance", hostModule}}));
    WNDCLASSW windowClass{};
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass));
}

TEST_F(MonitorThread, FillsTheMapWithHidDevicesFirstAndThenWithAll) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    const auto fills = Journal().Calls("SetupDiGetClassDevsW");
    ASSERT_EQ(fills.size(), 2u);
    EXPECT_EQ(fills[0]["classGuid"], "{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(fills[0]["flags"], "18");
    EXPECT_EQ(fills[1]["classGuid"], "null");
    EXPECT_EQ(fills[1]["flags"], "6");
}

TEST_F(MonitorThread, DoesAllOfItOnOneThread) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    monitor.Close();
    for (const char* const function :
         {"RegisterClassW", "CreateWindowExW", "RegisterDeviceNotificationW",
          "SetupDiGetClassDevsW", "UnregisterDeviceNotification", "UnregisterClassW"}) {
        for (const JournalEntry& call : Journal().Calls(function)) {
            EXPECT_EQ(call.threadId, monitor.ThreadId()) << call;
        }
    }
}

TEST_F(MonitorThread, PutsTheMachinesDevicesIntoTheReportersMap) {
    World().Change([](simulation::Machine& described) {
        for (const wchar_t* instanceId : {L"usb\\vid_1\\1", L"ACPI\\2"}) {
            simulation::Device device;
            device.instanceId = instanceId;
            described.devices.push_back(device);
        }
    });
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    EXPECT_EQ(reporter.devices.size(), 2u);
    EXPECT_EQ(reporter.devices.count(L"USB\\VID_1\\1"), 1u);
    monitor.Close();
    EXPECT_TRUE(reporter.devices.empty());
}

TEST_F(MonitorThread, WaitsForMessagesOfEveryKindAndWindow) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    monitor.Close();
    for (const JournalEntry& call : Journal().Calls("GetMessageW")) {
        EXPECT_EQ(call["window"], "null");
        EXPECT_EQ(call["first"], "0");
        EXPECT_EQ(call["last"], "0");
    }
}

TEST_F(MonitorThread, MayRunAgainAfterItsEnd) {
    for (int run = 0; run < 3; ++run) {
        Journal().Clear();
        RunningMonitor monitor(World(), reporter);
        ASSERT_TRUE(monitor.WaitsForMessages());
        EXPECT_TRUE(IsWindow(reporter.msgWindow));
        EXPECT_NE(reporter.devNotify, nullptr);
        monitor.Close();
        EXPECT_FALSE(IsWindow(reporter.msgWindow));
        EXPECT_EQ(reporter.devNotify, nullptr);
    }
}

}  // namespace
