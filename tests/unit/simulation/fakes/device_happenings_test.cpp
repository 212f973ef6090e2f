#include "simulation/device_happenings.h"

#include <gmock/gmock.h>
#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include <thread>

#include "sample_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Notification {
    WPARAM event;
    std::wstring path;
    bool operator==(const Notification& other) const {
        return event == other.event && path == other.path;
    }
};

/// Plays the plug-in's monitor: a message-only window on a thread of its own.
class Listener {
public:
    Listener() : thread([this] { Run(); }) { WaitForSingleObject(ready, INFINITE); }
    ~Listener() {
        PostMessageW(window, WM_CLOSE, 0, 0);
        thread.join();
        CloseHandle(ready);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::vector<Notification> notifications;
    DWORD delay = 0;  ///< Milliseconds that each notification takes.
    HWND window = nullptr;

private:
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<Listener*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_DESTROY) {
            PostQuitMessage(0);
        }
        if (message == WM_DEVICECHANGE && self != nullptr) {
            const auto& change = *reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(lParam);
            Sleep(self->delay);
            EXPECT_EQ(change.dbcc_devicetype, static_cast<DWORD>(DBT_DEVTYP_DEVICEINTERFACE));
            EXPECT_EQ(change.dbcc_size, 28 + 2 * (std::wcslen(change.dbcc_name) + 1));
            self->notifications.push_back({wParam, change.dbcc_name});
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    void Run() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"DeviceMonitorWnd";
        RegisterClassW(&windowClass);
        window = CreateWindowExW(0, L"DeviceMonitorWnd", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 windowClass.hInstance, nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetEvent(ready);
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            DispatchMessageW(&message);
        }
        UnregisterClassW(L"DeviceMonitorWnd", windowClass.hInstance);
    }

    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread thread;
};

class DeviceHappenings : public ::testing::Test {
protected:
    World world{Machine()};
    const Device keyboard = KeyboardMachine().devices[1];
};

TEST_F(DeviceHappenings, TellTheMonitorAboutEachInterfaceOfAnArrival) {
    const Listener listener;
    EXPECT_EQ(FindMonitorWindow(), listener.window);
    EXPECT_EQ(PlugDevice(world, keyboard), Delivery::Delivered);
    EXPECT_EQ(world.machine.devices.size(), 1u);
    EXPECT_THAT(listener.notifications,
                ElementsAre(Notification{DBT_DEVICEARRIVAL, kHidPath},
                            Notification{DBT_DEVICEARRIVAL, keyboard.interfaces[1].path},
                            Notification{DBT_DEVICEARRIVAL, kSilentHidPath}));
}

TEST_F(DeviceHappenings, TellTheMonitorAboutARemoval) {
    world.Plug(keyboard);
    const Listener listener;
    EXPECT_EQ(UnplugDevice(world, L"nothing"), Delivery::NoDevice);
    EXPECT_EQ(UnplugDevice(world, kHidId), Delivery::Delivered);
    EXPECT_THAT(world.machine.devices, IsEmpty());
    ASSERT_EQ(listener.notifications.size(), 3u);
    EXPECT_EQ(listener.notifications[0], (Notification{DBT_DEVICEREMOVECOMPLETE, kHidPath}));
}

TEST_F(DeviceHappenings, ChangeTheMachineWithoutAMonitor) {
    EXPECT_EQ(FindMonitorWindow(), nullptr);
    EXPECT_EQ(PlugDevice(world, keyboard), Delivery::NoWindow);
    EXPECT_EQ(world.machine.devices.size(), 1u);
}

TEST_F(DeviceHappenings, GiveUpOnAMonitorThatDoesNotAnswer) {
    Listener listener;
    listener.delay = 500;
    EXPECT_EQ(PlugDevice(world, keyboard, std::chrono::milliseconds(50)), Delivery::TimedOut);
    // What was sent stays readable for the monitor.
    while (SendMessageW(listener.window, WM_NULL, 0, 0) != 0 || listener.notifications.empty()) {
        Sleep(10);
    }
    EXPECT_EQ(listener.notifications[0].path, kHidPath);
}

}  // namespace
}  // namespace simulation
