// The monitor thread and its message-only window, to which the operating system sends device
// arrivals and other threads of the plug-in post requests.
//
// The window's user data slot holds the reporter from WM_NCCREATE to WM_NCDESTROY; messages outside
// that span get default handling only.

#include <windows.h>
#include <usbiodef.h>

#include "device_reporter/device_enumeration.h"
#include "device_reporter/report_device_info.h"
#include "report/log_line.h"

namespace DeviceReporter {

namespace {

static_assert(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W) == 32);

constexpr char kMonitorThreadProcFunction[] = "DeviceReporter::ReportDeviceInfo::MonitorThreadProc";
constexpr wchar_t kWindowClassName[] = L"DeviceMonitorWnd";

/// Registers the window class for as long as it is in scope.
class ScopedWindowClass {
public:
    ScopedWindowClass(HINSTANCE instance, WNDPROC windowProc) : moduleInstance(instance) {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = windowProc;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = kWindowClassName;
        registered = RegisterClassW(&windowClass) != 0;
    }
    ~ScopedWindowClass() {
        if (registered) {
            UnregisterClassW(kWindowClassName, moduleInstance);
        }
    }
    ScopedWindowClass(const ScopedWindowClass&) = delete;
    ScopedWindowClass& operator=(const ScopedWindowClass&) = delete;

    explicit operator bool() const { return registered; }

private:
    const HINSTANCE moduleInstance;
    bool registered = false;
};

void RunMessageLoop() {
    MSG message{};
    // Kept: an error, -1, does not end the loop.
    while (GetMessageW(&message, /*hWnd=*/nullptr, /*wMsgFilterMin=*/0, /*wMsgFilterMax=*/0) != 0) {
        if (message.message == WM_QUIT) {
            WriteLogLine(LOG_LEVEL_NORMAL, kMonitorThreadProcFunction, "recv quit message");
            break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

HDEVNOTIFY RegisterForDeviceArrivals(HWND window) {
    DEV_BROADCAST_DEVICEINTERFACE_W filter{};
    filter.dbcc_size = sizeof(filter);
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    // The flag for all interface classes has the last word.
    filter.dbcc_classguid = GUID_DEVINTERFACE_USB_DEVICE;
    return RegisterDeviceNotificationW(
        window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE | DEVICE_NOTIFY_ALL_INTERFACE_CLASSES);
}

}  // namespace

DWORD WINAPI ReportDeviceInfo::MonitorThreadProc(void* param) {
    auto* const reporter = static_cast<ReportDeviceInfo*>(param);
    if (reporter == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, kMonitorThreadProcFunction, "object is null");
        return 0;
    }
    // The class belongs to the host's executable, not to this library.
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const ScopedWindowClass windowClass(instance, &WindowProc);
    if (!windowClass) {
        WriteLogLine(LOG_LEVEL_NORMAL, kMonitorThreadProcFunction, "failed to register ",
                     kWindowClassName);
        return 0;
    }
    const HWND window = CreateWindowExW(
        /*dwExStyle=*/0, kWindowClassName, L"", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, HWND_MESSAGE, /*hMenu=*/nullptr, instance, reporter);
    if (window == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, kMonitorThreadProcFunction,
                     "failed to init message only window");
        return 0;
    }
    FillDeviceMap(reporter->devices);
    RunMessageLoop();
    // A quit message that did not come from the window leaves the window behind.
    if (IsWindow(window)) {
        DestroyWindow(window);
    }
    return 0;
}

LRESULT CALLBACK ReportDeviceInfo::WindowProc(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) {
    ReportDeviceInfo* reporter = nullptr;
    if (message == WM_NCCREATE && lParam != 0) {
        const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        reporter = static_cast<ReportDeviceInfo*>(creation->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(reporter));
    } else if (message != WM_NCCREATE) {
        reporter = reinterpret_cast<ReportDeviceInfo*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    }
    if (reporter != nullptr) {
        reporter->HandleMessage(window, message, wParam, lParam);
    }
    // Handled or not, every message gets its default handling too.
    const LRESULT result = DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    }
    return result;
}

void ReportDeviceInfo::HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            OnCreate(window);
            break;
        case WM_DESTROY:
            OnDestroy();
            break;
        case WM_DEVICECHANGE:
            OnDeviceChange(wParam, reinterpret_cast<const DEV_BROADCAST_HDR*>(lParam));
            break;
        case WM_REPORT_DEVICES:
            DoReportDevices();
            break;
        default:
            break;
    }
}

void ReportDeviceInfo::OnCreate(HWND window) {
    msgWindow = window;
    if (devNotify == nullptr) {
        // Kept: a failure is not logged. The monitor then reports what it found at its start.
        devNotify = RegisterForDeviceArrivals(window);
    }
}

void ReportDeviceInfo::OnDestroy() {
    if (devNotify != nullptr) {
        UnregisterDeviceNotification(devNotify);
        devNotify = nullptr;
    }
    devices.clear();
    // msgWindow keeps the old handle: later posts go nowhere, without a log line each hour.
    PostQuitMessage(0);
}

void ReportDeviceInfo::OnDeviceChange(WPARAM event, const DEV_BROADCAST_HDR* header) {
    if (event != DBT_DEVICEARRIVAL && event != DBT_DEVICEREMOVECOMPLETE) {
        return;
    }
    if (header == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, "DeviceReporter::ReportDeviceInfo::OnDeviceChange",
                     "hdr is null");
        return;
    }
    // Kept: a device that is gone stays in the map, and in every list, until the window is
    // destroyed.
    if (event == DBT_DEVICEARRIVAL && header->dbch_devicetype == DBT_DEVTYP_DEVICEINTERFACE) {
        const auto& arrival = *reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(header);
        // The result is dropped: a fill that failed has logged it.
        AddDeviceInterfaceToMap(arrival.dbcc_classguid, devices);
    }
}

}  // namespace DeviceReporter
