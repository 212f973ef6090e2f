// The message loop and the ways out of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "unit/device_monitor/monitor_test.h"
#include "unit/device_monitor/running_monitor.h"
#include "unit/device_monitor/watched_calls.h"

namespace {

using namespace device_monitor_test;
using simulation::FaultVariant;
using Texts = std::vector<std::string>;

constexpr char kQuitLine[] =
    "log 3 recv quit message(DeviceReporter::ReportDeviceInfo::MonitorThreadProc)";

/// Around the simulated machine, so that what passes through the machine is seen.
class WatchesCalls {
protected:
    WatchedCalls watched;
};

class MessageLoop : public WatchesCalls, public MonitorTest {
protected:
    static bool IsAllZero(const MSG& message) {
        return message.hwnd == nullptr && message.message == 0 && message.wParam == 0 &&
               message.lParam == 0 && message.time == 0 && message.pt.x == 0 && message.pt.y == 0;
    }
};

TEST_F(MessageLoop, TranslatesAndDispatchesEachMessage) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    ASSERT_TRUE(PostMessageW(reporter.msgWindow, WM_APP + 5, 6, 7));
    ASSERT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") > 1; }));
    monitor.Close();
    const auto isPosted = [this](const MSG& message) {
        return message.hwnd == reporter.msgWindow && message.message == WM_APP + 5 &&
               message.wParam == 6 && message.lParam == 7;
    };
    EXPECT_EQ(std::count_if(watched.translated.begin(), watched.translated.end(), isPosted), 1);
    EXPECT_EQ(std::count_if(watched.dispatched.begin(), watched.dispatched.end(), isPosted), 1);
}

TEST_F(MessageLoop, GoesOnAfterAnErrorWithAMessageThatIsAllZero) {
    World().faults.FailCall("GetMessageW", 1, ERROR_INVALID_WINDOW_HANDLE);
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") > 1; }));
    EXPECT_TRUE(IsWindow(reporter.msgWindow));
    monitor.Close();
    ASSERT_FALSE(watched.translated.empty());
    EXPECT_TRUE(IsAllZero(watched.translated.front()));
    ASSERT_FALSE(watched.dispatched.empty());
    EXPECT_TRUE(IsAllZero(watched.dispatched.front()));
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MessageLoop, GoesOnAfterManyErrors) {
    for (unsigned call = 1; call <= 5; ++call) {
        World().faults.FailCall("GetMessageW", call, ERROR_INVALID_WINDOW_HANDLE);
    }
    RunningMonitor monitor(World(), reporter);
    EXPECT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") == 6; }));
}

TEST_F(MessageLoop, LeavesQuietlyWhenTheWindowIsClosed) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    monitor.Send(WM_CLOSE);
    EXPECT_TRUE(monitor.Ends());
    EXPECT_TRUE(Timeline().Texts().empty());
}

TEST_F(MessageLoop, LeavesWithItsLineWhenAQuitMessageIsHandedOutLikeAnyOther) {
    World().faults.FailCall("GetMessageW", 1, WM_QUIT, FaultVariant::SuccessWithNothing);
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.Ends());
    EXPECT_EQ(Timeline().Texts(), Texts{kQuitLine});
    EXPECT_EQ(Journal().Count("GetMessageW"), 1u);
    EXPECT_EQ(monitor.Status(), 0u);
    EXPECT_TRUE(watched.dispatched.empty());
}

TEST_F(MessageLoop, LeavesNoWindowAndClassBehindWhenItIsToldToQuit) {
    for (const bool handedOutAsMessage : {true, false}) {
        if (handedOutAsMessage) {
            World().faults.FailCall("GetMessageW", 1, WM_QUIT, FaultVariant::SuccessWithNothing);
        }
        Journal().Clear();
        RunningMonitor monitor(World(), reporter);
        if (!handedOutAsMessage) {
            ASSERT_TRUE(monitor.WaitsForMessages());
            ASSERT_TRUE(PostThreadMessageW(monitor.ThreadId(), WM_QUIT, 0, 0));
        }
        ASSERT_TRUE(monitor.Ends());
        EXPECT_FALSE(IsWindow(reporter.msgWindow));
        WNDCLASSW windowClass{};
        EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass));
        EXPECT_EQ(reporter.devNotify, nullptr);
        EXPECT_TRUE(reporter.devices.empty());
        EXPECT_TRUE(World().ledger.Balanced()) << World().ledger;
    }
}

TEST_F(MessageLoop, RegistersForNotificationsWithAFilterThatIsOtherwiseZero) {
    RunningMonitor monitor(World(), reporter);
    ASSERT_TRUE(monitor.WaitsForMessages());
    BYTE expected[32]{};
    const DWORD size = 32;
    const DWORD deviceInterface = 5;
    // {A5DCBF10-6530-11D2-901F-00C04FB951ED}
    const GUID usbDevice{
        0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
    std::memcpy(expected, &size, sizeof(size));
    std::memcpy(expected + 4, &deviceInterface, sizeof(deviceInterface));
    std::memcpy(expected + 12, &usbDevice, sizeof(usbDevice));
    ASSERT_EQ(watched.filters.size(), 1u);
    EXPECT_EQ(watched.filters[0], std::vector<BYTE>(expected, expected + sizeof(expected)));
}

}  // namespace
