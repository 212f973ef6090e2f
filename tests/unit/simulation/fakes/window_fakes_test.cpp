#include "simulation/fakes/window_calls.h"

#include <gmock/gmock.h>
#include <windows.h>

#include "simulation/call_text.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

constexpr wchar_t kClassName[] = L"SimulationFakesTestWnd";

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) {
        PostQuitMessage(3);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

class WindowFakes : public ::testing::Test {
protected:
    ATOM Register() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = kClassName;
        return RegisterClassW(&windowClass);
    }

    HWND Create() {
        return CreateWindowExW(0, kClassName, L"", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                               CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, HWND_MESSAGE, nullptr,
                               instance, this);
    }

    /// The result that ended the loop.
    BOOL RunMessageLoop() {
        MSG message{};
        BOOL result = FALSE;
        while ((result = GetMessageW(&message, nullptr, 0, 0)) > 0) {
            DispatchMessageW(&message);
        }
        return result;
    }

    const HINSTANCE instance = GetModuleHandleW(nullptr);
    SimulatedMachine machine{instance, Machine(), {InstallWindowFakes}};
    World& world = machine.world();
};

TEST_F(WindowFakes, AccountForClassAndWindowFromTheirBeginningToTheirEnd) {
    ASSERT_NE(Register(), 0);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::WindowClass), 1u);
    const HWND window = Create();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(world.ledger.IsOpen(ResourceKind::Window, window));
    EXPECT_TRUE(PostMessageW(window, WM_CLOSE, 0, 0));
    EXPECT_EQ(RunMessageLoop(), FALSE);
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::Window), 0u);
    EXPECT_TRUE(UnregisterClassW(kClassName, instance));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;

    const JournalEntry registered = world.journal.Calls("RegisterClassW").at(0);
    EXPECT_EQ(registered["className"], "SimulationFakesTestWnd");
    EXPECT_EQ(registered["instance"], CallText(instance));
    EXPECT_EQ(registered["procedure"], CallText(WindowProc));
    EXPECT_EQ(registered["cursor"], "null");
    const JournalEntry created = world.journal.Calls("CreateWindowExW").at(0);
    EXPECT_EQ(created["extendedStyle"], "0");
    EXPECT_EQ(created["className"], "SimulationFakesTestWnd");
    EXPECT_EQ(created["title"], "");
    EXPECT_EQ(created["style"], std::to_string(WS_OVERLAPPEDWINDOW));
    EXPECT_EQ(created["x"], std::to_string(CW_USEDEFAULT));
    EXPECT_EQ(created["parent"], "HWND_MESSAGE");
    EXPECT_EQ(created["parameter"], CallText(this));
    EXPECT_EQ(world.journal.Calls("PostMessageW").at(0)["message"], std::to_string(WM_CLOSE));
    EXPECT_EQ(world.journal.Calls("PostQuitMessage").at(0)["exitCode"], "3");
    const JournalEntry lastMessage = world.journal.Calls("GetMessageW").back();
    EXPECT_EQ(lastMessage["message"], std::to_string(WM_QUIT));
    EXPECT_EQ(lastMessage.result, "0");
    EXPECT_EQ(lastMessage.error, 0u);
    EXPECT_EQ(world.journal.Calls("DefWindowProcW").back()["message"],
              std::to_string(WM_NCDESTROY));
}

TEST_F(WindowFakes, AccountForADestroyedWindowOnce) {
    const ATOM atom = Register();
    const HWND window = Create();
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_EQ(RunMessageLoop(), FALSE);
    EXPECT_TRUE(
        UnregisterClassW(reinterpret_cast<const wchar_t*>(static_cast<UINT_PTR>(atom)), instance));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(WindowFakes, KeepTheSystemsOwnErrors) {
    EXPECT_FALSE(UnregisterClassW(kClassName, instance));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_DOES_NOT_EXIST));
    EXPECT_FALSE(PostMessageW(reinterpret_cast<HWND>(0x1234566), WM_CLOSE, 0, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    ASSERT_NE(Register(), 0);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_CLASS_ALREADY_EXISTS));
    EXPECT_TRUE(UnregisterClassW(kClassName, instance));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

TEST_F(WindowFakes, FailAsPlanned) {
    world.faults.FailCall("RegisterClassW", 1, 8);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(GetLastError(), 8u);
    ASSERT_NE(Register(), 0);
    world.faults.FailCall("CreateWindowExW", 1, 14);
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(GetLastError(), 14u);
    world.faults.FailCall("UnregisterClassW", 1, 1412);
    EXPECT_FALSE(UnregisterClassW(kClassName, instance));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::WindowClass), 1u);
    EXPECT_TRUE(UnregisterClassW(kClassName, instance));

    MSG message{};
    message.message = 4711;
    world.faults.FailCall("GetMessageW", 1, 1400);
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), -1);
    EXPECT_EQ(GetLastError(), 1400u);
    EXPECT_EQ(message.message, 4711u);
    world.faults.FailCall("GetMessageW", 1, WM_QUIT, FaultVariant::SuccessWithNothing);
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), TRUE);
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    world.faults.FailCall("PostMessageW", 1, 1816);
    EXPECT_FALSE(PostMessageW(nullptr, WM_APP, 0, 0));
    EXPECT_EQ(GetLastError(), 1816u);
    world.faults.FailCall("PostMessageW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(PostMessageW(nullptr, WM_APP, 0, 0));
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_TRUE(world.faults.Missed().empty());
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
}

}  // namespace
}  // namespace simulation
