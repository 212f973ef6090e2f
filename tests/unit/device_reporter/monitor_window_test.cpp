// The monitor's window procedure, called for a window of the test's own. The thread with its
// message loop and what it makes of device notifications is in the tests of the built library.
#include <windows.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "simulation/call_text.h"
#include "standins/consent_store/consent_store_control.h"
#include "unit/device_reporter/monitor_test.h"
#include "unit/import_override.h"

namespace {

using namespace device_tests;
using DeviceReporter::ReportDeviceInfo;
using unit_tests::ImportOverride;

TEST_F(MonitorTest, LogsAMissingReporterAndDoesNothingElse) {
    EXPECT_EQ(ReportDeviceInfo::MonitorThreadProc(nullptr), 0u);
    EXPECT_EQ(Timeline().Texts(),
              Texts{"log 3 object is null(DeviceReporter::ReportDeviceInfo::MonitorThreadProc)"});
    EXPECT_EQ(Journal().Count("RegisterClassW"), 0u);
}

/// What the private window message is to its senders.
constexpr UINT kReportMessage = 2025;

WNDPROC procedure = nullptr;
std::vector<BYTE> notificationFilter;

/// The thread ends when there is no class for its window.
ATOM WINAPI NoteProcedure(const WNDCLASSW* windowClass) {
    procedure = windowClass->lpfnWndProc;
    return 0;
}

HDEVNOTIFY WINAPI NoteFilter(HANDLE recipient, void* filter, DWORD flags) {
    const auto* const begin = static_cast<const BYTE*>(filter);
    notificationFilter.assign(begin, begin + static_cast<DEV_BROADCAST_HDR*>(filter)->dbch_size);
    return ImportOverride<decltype(::RegisterDeviceNotificationW)>::Next()(recipient, filter,
                                                                           flags);
}

class WindowProcedure : public MonitorTest {
protected:
    WindowProcedure() {
        const ImportOverride<decltype(::RegisterClassW)> handMade("RegisterClassW", NoteProcedure);
        ReportDeviceInfo::MonitorThreadProc(&reporter);
        window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                 nullptr);
        Journal().Clear();
        Timeline().Clear();
    }
    void SetUp() override { ASSERT_NE(procedure, nullptr); }
    ~WindowProcedure() override {
        DestroyWindow(window);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    LRESULT Call(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return procedure(window, message, wParam, lParam);
    }
    LRESULT CallNcCreate(void* parameter) {
        CREATESTRUCTW creation{};
        creation.lpCreateParams = parameter;
        creation.lpszName = L"";
        return Call(WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&creation));
    }

    void* Stored() const {
        return reinterpret_cast<void*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    }
    void Store(void* pointer) {
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pointer));
    }

    /// Exactly one message went on to its default handling: this one.
    void ExpectDefaultHandlingOf(UINT message, WPARAM wParam, LPARAM lParam) {
        const auto calls = Journal().Calls("DefWindowProcW");
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0]["window"], simulation::CallText(static_cast<const void*>(window)));
        EXPECT_EQ(calls[0]["message"], std::to_string(message));
        EXPECT_EQ(calls[0]["wParam"], std::to_string(wParam));
        EXPECT_EQ(calls[0]["lParam"], std::to_string(lParam));
        Journal().Clear();
    }

    HWND window = nullptr;
};

TEST_F(WindowProcedure, KeepsTheCreationParameterFromTheFirstMessageOn) {
    EXPECT_EQ(CallNcCreate(&reporter), TRUE);
    EXPECT_EQ(Stored(), &reporter);
    EXPECT_EQ(Journal().Count("DefWindowProcW"), 1u);
}

TEST_F(WindowProcedure, GivesACreationWithoutStructureDefaultHandlingOnly) {
    Store(&reporter);
    Call(WM_NCCREATE, 3, 0);
    EXPECT_EQ(Stored(), &reporter);
    ExpectDefaultHandlingOf(WM_NCCREATE, 3, 0);
}

TEST_F(WindowProcedure, KeepsACreationParameterThatIsNull) {
    Store(&reporter);
    CallNcCreate(nullptr);
    EXPECT_EQ(Stored(), nullptr);
}

TEST_F(WindowProcedure, GivesMessagesBeforeThePointerIsStoredDefaultHandlingOnly) {
    MakeDue(0);
    CREATESTRUCTW creation{};
    creation.lpCreateParams = &reporter;
    MINMAXINFO sizes{};
    struct {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    } const messages[] = {
        {WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&sizes)},
        {WM_CREATE, 0, reinterpret_cast<LPARAM>(&creation)},
        {WM_DEVICECHANGE, 0x8000, 0},
        {kReportMessage, 0, 0},
        {WM_DESTROY, 0, 0},
    };
    for (const auto& [message, wParam, lParam] : messages) {
        Call(message, wParam, lParam);
        ExpectDefaultHandlingOf(message, wParam, lParam);
    }
    EXPECT_TRUE(Timeline().Texts().empty());
    EXPECT_EQ(reporter.msgWindow, nullptr);
    EXPECT_EQ(reporter.devices.size(), 1u);
}

TEST_F(WindowProcedure, RegistersForNotificationsAtCreationUnlessARegistrationIsHeld) {
    const ImportOverride<decltype(::RegisterDeviceNotificationW)> handMade(
        "RegisterDeviceNotificationW", NoteFilter);
    Store(&reporter);
    EXPECT_EQ(Call(WM_CREATE), 0);
    EXPECT_EQ(reporter.msgWindow, window);
    const HDEVNOTIFY held = reporter.devNotify;
    EXPECT_NE(held, nullptr);
    Call(WM_CREATE);
    EXPECT_EQ(reporter.devNotify, held);
    const auto calls = Journal().Calls("RegisterDeviceNotificationW");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0]["recipient"], simulation::CallText(static_cast<const void*>(window)));
    EXPECT_EQ(calls[0]["flags"], "4");
    // The size, the device type and a class; the rest is zero.
    const GUID usbDevice{
        0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
    std::vector<BYTE> expected(32);
    expected[0] = 32;
    expected[4] = 5;
    std::memcpy(&expected[12], &usbDevice, sizeof(usbDevice));
    EXPECT_EQ(notificationFilter, expected);
    Call(WM_DESTROY);
}

TEST_F(WindowProcedure, UnregistersClearsTheMapAndQuitsWhenTheWindowGoes) {
    MakeDue(0);
    Store(&reporter);
    Call(WM_CREATE);
    const HDEVNOTIFY held = reporter.devNotify;
    Journal().Clear();
    Call(WM_DESTROY);
    const auto unregistered = Journal().Calls("UnregisterDeviceNotification");
    ASSERT_EQ(unregistered.size(), 1u);
    EXPECT_EQ(unregistered[0]["notification"],
              simulation::CallText(static_cast<const void*>(held)));
    EXPECT_EQ(reporter.devNotify, nullptr);
    EXPECT_TRUE(reporter.devices.empty());
    const auto quits = Journal().Calls("PostQuitMessage");
    ASSERT_EQ(quits.size(), 1u);
    EXPECT_EQ(quits[0]["exitCode"], "0");
    EXPECT_LT(unregistered[0].sequence, quits[0].sequence);
    EXPECT_LT(quits[0].sequence, Journal().Calls("DefWindowProcW").at(0).sequence);
    EXPECT_EQ(reporter.msgWindow, window);  // Deliberately stale from now on.
}

TEST_F(WindowProcedure, UnregistersNothingWhenNothingIsRegistered) {
    Store(&reporter);
    Call(WM_DESTROY);
    EXPECT_EQ(Journal().Count("UnregisterDeviceNotification"), 0u);
    EXPECT_EQ(Journal().Count("PostQuitMessage"), 1u);
}

TEST_F(WindowProcedure, ForgetsThePointerAfterTheLastMessage) {
    Store(&reporter);
    Call(WM_DESTROY);
    EXPECT_EQ(Stored(), &reporter);
    Journal().Clear();
    Call(WM_NCDESTROY);
    EXPECT_EQ(Stored(), nullptr);
    ExpectDefaultHandlingOf(WM_NCDESTROY, 0, 0);
}

TEST_F(WindowProcedure, PassesEveryMessageOnAndReturnsWhatTheDefaultReturns) {
    Store(&reporter);
    for (const UINT message : {static_cast<UINT>(WM_CREATE), static_cast<UINT>(WM_DEVICECHANGE),
                               kReportMessage, static_cast<UINT>(WM_QUERYENDSESSION),
                               static_cast<UINT>(WM_NULL), static_cast<UINT>(WM_APP + 3)}) {
        Journal().Clear();
        const LRESULT result = Call(message, 11, 0);
        ExpectDefaultHandlingOf(message, 11, 0);
        EXPECT_EQ(result, DefWindowProcW(window, message, 11, 0)) << message;
    }
    EXPECT_EQ(Call(WM_QUERYENDSESSION), 1);
    Call(WM_DESTROY);
}

TEST_F(WindowProcedure, ReportsOnlyForThePrivateMessage) {
    MakeDue(0);
    Store(&reporter);
    for (const UINT message : {kReportMessage - 1, kReportMessage + 1, static_cast<UINT>(WM_USER),
                               static_cast<UINT>(WM_TIMER)}) {
        Call(message);
    }
    EXPECT_EQ(ConsentStore_AskCount(), 0u);
    Call(kReportMessage);
    EXPECT_EQ(Timeline().Count(kListLine), 1u);
    EXPECT_EQ(reporter.reportCount, 1);
}

}  // namespace
