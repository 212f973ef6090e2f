#include <atomic>

#include "instant/instant_calls.h"

namespace benchmarks {
namespace {

std::atomic<unsigned> endedMonitors{0};

ATOM WINAPI RegisterWindowClass(const WNDCLASSW*) { return 1; }
BOOL WINAPI UnregisterWindowClass(const wchar_t*, HINSTANCE) {
    ++endedMonitors;
    return TRUE;
}
HWND WINAPI CreateMonitorWindow(DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int,
                                HWND, HMENU, HINSTANCE, void*) {
    static int window = 0;
    return reinterpret_cast<HWND>(&window);
}
BOOL WINAPI NoMoreMessages(MSG*, HWND, UINT, UINT) { return FALSE; }
BOOL WINAPI IsNoWindow(HWND) { return FALSE; }

}  // namespace

void PutInstantWindow(simulation::ImportRedirection& redirection) {
    Put(redirection, "RegisterClassW", reinterpret_cast<void*>(&RegisterWindowClass));
    Put(redirection, "UnregisterClassW", reinterpret_cast<void*>(&UnregisterWindowClass));
    Put(redirection, "CreateWindowExW", reinterpret_cast<void*>(&CreateMonitorWindow));
    Put(redirection, "GetMessageW", reinterpret_cast<void*>(&NoMoreMessages));
    Put(redirection, "IsWindow", reinterpret_cast<void*>(&IsNoWindow));
}

unsigned EndedMonitors() { return endedMonitors; }

}  // namespace benchmarks
