#include "host/monitor_window.h"

#include <gtest/gtest.h>
#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include <vector>

namespace host {
namespace {

struct Notice {
    WPARAM event;
    DWORD deviceType;
    GUID interfaceClass;
    std::wstring path;
};

std::vector<Notice> notices;

LRESULT CALLBACK NoteDeviceChange(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DEVICECHANGE) {
        const auto* const device = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(lParam);
        notices.push_back(
            {wParam, device->dbcc_devicetype, device->dbcc_classguid, device->dbcc_name});
        return TRUE;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

constexpr GUID kFirstClass{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
constexpr GUID kSecondClass{12, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

simulation::Device TwoInterfaces() {
    simulation::Device device;
    device.interfaces = {{kFirstClass, L"\\\\?\\first", {}}, {kSecondClass, L"\\\\?\\second", {}}};
    return device;
}

/// A window such as the plug-in's monitor has.
class FakeMonitorWindow {
public:
    FakeMonitorWindow() {
        windowClass.lpfnWndProc = NoteDeviceChange;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"DeviceMonitorWnd";
        RegisterClassW(&windowClass);
        window = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                 nullptr, windowClass.hInstance, nullptr);
    }
    ~FakeMonitorWindow() {
        DestroyWindow(window);
        UnregisterClassW(windowClass.lpszClassName, windowClass.hInstance);
    }
    FakeMonitorWindow(const FakeMonitorWindow&) = delete;
    FakeMonitorWindow& operator=(const FakeMonitorWindow&) = delete;

private:
    WNDCLASSW windowClass{};
    HWND window = nullptr;
};

TEST(MonitorWindow, TellsTheMonitorWindowOfEachInterface) {
    notices.clear();
    const FakeMonitorWindow window;
    AnnounceDevice(TwoInterfaces(), /*arrived=*/true);
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[0].event, WPARAM{DBT_DEVICEARRIVAL});
    EXPECT_EQ(notices[0].deviceType, DWORD{DBT_DEVTYP_DEVICEINTERFACE});
    EXPECT_TRUE(IsEqualGUID(notices[0].interfaceClass, kFirstClass));
    EXPECT_EQ(notices[0].path, L"\\\\?\\first");
    EXPECT_TRUE(IsEqualGUID(notices[1].interfaceClass, kSecondClass));
    EXPECT_EQ(notices[1].path, L"\\\\?\\second");
}

TEST(MonitorWindow, TellsARemovalAsSuch) {
    notices.clear();
    const FakeMonitorWindow window;
    AnnounceDevice(TwoInterfaces(), /*arrived=*/false);
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[1].event, WPARAM{DBT_DEVICEREMOVECOMPLETE});
}

TEST(MonitorWindow, TellsNobodyWhenThereIsNoMonitor) {
    notices.clear();
    AnnounceDevice(TwoInterfaces(), /*arrived=*/true);
    EXPECT_TRUE(notices.empty());
}

}  // namespace
}  // namespace host
