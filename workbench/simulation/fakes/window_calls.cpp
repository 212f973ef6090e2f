#include <windows.h>
// windows.h has to come first.
#include <dbt.h>

#include <map>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

/// The ledger knows a window class by its atom; callers may name it instead.
struct WindowClasses {
    std::map<std::wstring, ATOM> atoms;
};

decltype(::RegisterClassW)* realRegisterClassW = nullptr;
decltype(::UnregisterClassW)* realUnregisterClassW = nullptr;
decltype(::CreateWindowExW)* realCreateWindowExW = nullptr;
decltype(::DestroyWindow)* realDestroyWindow = nullptr;
decltype(::DefWindowProcW)* realDefWindowProcW = nullptr;
decltype(::GetMessageW)* realGetMessageW = nullptr;
decltype(::PostMessageW)* realPostMessageW = nullptr;
decltype(::PostQuitMessage)* realPostQuitMessage = nullptr;
decltype(::RegisterDeviceNotificationW)* realRegisterDeviceNotificationW = nullptr;
decltype(::UnregisterDeviceNotification)* realUnregisterDeviceNotification = nullptr;

const void* AtomValue(ATOM atom) {
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(atom));
}

ATOM WINAPI FakeRegisterClassW(const WNDCLASSW* windowClass) {
    FakeCall call(
        "RegisterClassW", Arg{"style", windowClass->style},
        Arg{"procedure", windowClass->lpfnWndProc}, Arg{"classBytes", windowClass->cbClsExtra},
        Arg{"windowBytes", windowClass->cbWndExtra}, Arg{"instance", windowClass->hInstance},
        Arg{"icon", windowClass->hIcon}, Arg{"cursor", windowClass->hCursor},
        Arg{"background", windowClass->hbrBackground}, Arg{"menuName", windowClass->lpszMenuName},
        Arg{"className", windowClass->lpszClassName});
    const ATOM atom = call.FailsOrPassesTo(ATOM{}, realRegisterClassW, windowClass);
    if (atom != 0 && !IS_INTRESOURCE(windowClass->lpszClassName)) {
        World& world = call.world();
        const auto lock = world.Lock();
        world.FamilyState<WindowClasses>().atoms[windowClass->lpszClassName] = atom;
        world.ledger.Adopt(ResourceKind::WindowClass, AtomValue(atom),
                           ToUtf8(windowClass->lpszClassName));
    }
    return atom;
}

BOOL WINAPI FakeUnregisterClassW(const wchar_t* className, HINSTANCE instance) {
    FakeCall call("UnregisterClassW", Arg{"className", className}, Arg{"instance", instance});
    const BOOL unregistered =
        call.FailsOrPassesTo(FALSE, realUnregisterClassW, className, instance);
    if (unregistered != FALSE) {
        World& world = call.world();
        const auto lock = world.Lock();
        const auto& atoms = world.FamilyState<WindowClasses>().atoms;
        const auto known = IS_INTRESOURCE(className) ? atoms.end() : atoms.find(className);
        world.ledger.Release(ResourceKind::WindowClass, known == atoms.end()
                                                            ? static_cast<const void*>(className)
                                                            : AtomValue(known->second));
    }
    return unregistered;
}

HWND WINAPI FakeCreateWindowExW(DWORD extendedStyle, const wchar_t* className, const wchar_t* title,
                                DWORD style, int x, int y, int width, int height, HWND parent,
                                HMENU menu, HINSTANCE instance, void* parameter) {
    FakeCall call("CreateWindowExW", Arg{"extendedStyle", extendedStyle},
                  Arg{"className", className}, Arg{"title", title}, Arg{"style", style},
                  Arg{"x", x}, Arg{"y", y}, Arg{"width", width}, Arg{"height", height});
    if (parent == HWND_MESSAGE) {
        call.Argument("parent", "HWND_MESSAGE");
    } else {
        call.Argument("parent", parent);
    }
    call.Arguments({{"menu", menu}, {"instance", instance}, {"parameter", parameter}});
    const HWND window =
        call.FailsOrPassesTo(HWND{}, realCreateWindowExW, extendedStyle, className, title, style, x,
                             y, width, height, parent, menu, instance, parameter);
    if (window != nullptr) {
        call.world().ledger.Adopt(ResourceKind::Window, window,
                                  title == nullptr ? "" : ToUtf8(title));
    }
    return window;
}

/// A window may end in two ways: its procedure hands on the last message, or DestroyWindow returns.
void ReleaseWindow(World& world, HWND window) {
    world.ledger.ReleaseIfOpen(ResourceKind::Window, window);
}

BOOL WINAPI FakeDestroyWindow(HWND window) {
    FakeCall call("DestroyWindow", Arg{"window", window});
    const BOOL destroyed = call.FailsOrPassesTo(FALSE, realDestroyWindow, window);
    if (destroyed != FALSE) {
        ReleaseWindow(call.world(), window);
    }
    return destroyed;
}

void MessageArguments(FakeCall& call, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    call.Arguments(
        {{"window", window}, {"message", message}, {"wParam", wParam}, {"lParam", lParam}});
}

/// Knows no failure: what a zero means depends on the message.
LRESULT WINAPI FakeDefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    FakeCall call("DefWindowProcW");
    MessageArguments(call, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        ReleaseWindow(call.world(), window);
    }
    return call.Returns(realDefWindowProcW(window, message, wParam, lParam));
}

/// Plans: Fail returns -1 and leaves the message as it is. SuccessWithNothing hands out a message
/// that nobody sent, to no window; its number is the planned one.
BOOL WINAPI FakeGetMessageW(MSG* message, HWND window, UINT first, UINT last) {
    FakeCall call("GetMessageW", Arg{"window", window}, Arg{"first", first}, Arg{"last", last});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        *message = {};
        message->message = call.PlannedFault()->error;
        call.Argument("message", message->message);
        return call.Returns(TRUE);
    }
    if (call.PlannedFault()) {
        return call.Fails(-1);
    }
    const BOOL result = realGetMessageW(message, window, first, last);
    if (result == -1) {
        return call.Fails(result, GetLastError());
    }
    call.Argument("message", message->message);
    return call.Returns(result);
}

/// Plans: SuccessWithNothing posts nothing.
BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    FakeCall call("PostMessageW");
    MessageArguments(call, window, message, wParam, lParam);
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    return call.FailsOrPassesTo(FALSE, realPostMessageW, window, message, wParam, lParam);
}

void WINAPI FakePostQuitMessage(int exitCode) {
    FakeCall call("PostQuitMessage", Arg{"exitCode", exitCode});
    call.PassTo(realPostQuitMessage, exitCode);
}

HDEVNOTIFY WINAPI FakeRegisterDeviceNotificationW(HANDLE recipient, void* filter, DWORD flags) {
    FakeCall call("RegisterDeviceNotificationW", Arg{"recipient", recipient});
    const auto* header = static_cast<const DEV_BROADCAST_HDR*>(filter);
    call.Arguments({{"filterSize", header->dbch_size}, {"deviceType", header->dbch_devicetype}});
    if (header->dbch_devicetype == DBT_DEVTYP_DEVICEINTERFACE) {
        call.Argument("interfaceClass",
                      static_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(filter)->dbcc_classguid);
    }
    call.Argument("flags", flags);
    const HDEVNOTIFY notification = call.FailsOrPassesTo(
        HDEVNOTIFY{}, realRegisterDeviceNotificationW, recipient, filter, flags);
    if (notification != nullptr) {
        call.world().ledger.Adopt(ResourceKind::Notification, notification);
    }
    return notification;
}

BOOL WINAPI FakeUnregisterDeviceNotification(HDEVNOTIFY notification) {
    FakeCall call("UnregisterDeviceNotification", Arg{"notification", notification});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    call.world().ledger.Release(ResourceKind::Notification, notification);
    return call.PassTo(realUnregisterDeviceNotification, notification);
}

}  // namespace

void InstallWindowFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"RegisterClassW", FakeRegisterClassW, &realRegisterClassW},
        {"UnregisterClassW", FakeUnregisterClassW, &realUnregisterClassW},
        {"CreateWindowExW", FakeCreateWindowExW, &realCreateWindowExW},
        {"DestroyWindow", FakeDestroyWindow, &realDestroyWindow},
        {"DefWindowProcW", FakeDefWindowProcW, &realDefWindowProcW},
        {"GetMessageW", FakeGetMessageW, &realGetMessageW},
        {"PostMessageW", FakePostMessageW, &realPostMessageW},
        {"PostQuitMessage", FakePostQuitMessage, &realPostQuitMessage},
        {"RegisterDeviceNotificationW", FakeRegisterDeviceNotificationW,
         &realRegisterDeviceNotificationW},
        {"UnregisterDeviceNotification", FakeUnregisterDeviceNotification,
         &realUnregisterDeviceNotification},
    });
}

}  // namespace simulation
