// A library like the plug-in, whose threads are inside the stand-ins when the process ends and
// which still uses them while it is detached.
#include <windows.h>

#include "standins/log_kit/log_kit_control.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "standins/xeevent/xeevent_control.h"

namespace {

VrSDK::BiosEventMonitor monitor;
PluginRegistrationInfo registration;
HANDLE threadIsInside;

void StayForEver() {
    SetEvent(threadIsInside);
    Sleep(INFINITE);
}

void Log() {
    std::wstringstream stream;
    stream << L"detached";
    VrLogger::GetInstance()->Log(LOG_LEVEL_NORMAL, stream);
}

void Report() {
    XeEvent event(1);
    XeView::Report(event);
}

void RunAndWaitUntilInside(LPTHREAD_START_ROUTINE routine) {
    CloseHandle(CreateThread(nullptr, 0, routine, nullptr, 0, nullptr));
    WaitForSingleObject(threadIsInside, INFINITE);
}

}  // namespace

/// Leaves one thread each inside a log line, an event and the delivery of a firmware event.
extern "C" __declspec(dllexport) void LeaveThreadsInside() {
    threadIsInside = CreateEventW(nullptr, /*bManualReset=*/FALSE, FALSE, nullptr);
    RegisterPlugin(&registration);
    LogKit_SetConsole(0);
    LogKit_SetSink([](void*, int, const wchar_t*) { StayForEver(); }, nullptr);
    XeEvent_SetSink([](void*, int, const XeEventField*, size_t) { StayForEver(); }, nullptr);
    monitor.StartEventMonitor([](unsigned int) { StayForEver(); });
    RunAndWaitUntilInside([](void*) -> DWORD { return Log(), 0; });
    RunAndWaitUntilInside([](void*) -> DWORD { return Report(), 0; });
    RunAndWaitUntilInside([](void*) -> DWORD { return WmiKit_FireFirmwareEvent(675), 0; });
}

// The monitor's destructor runs after this, as the module's statics are destroyed.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_DETACH) {
        Log();
        Report();
        UnRegisterPlugin(&registration);
    }
    return TRUE;
}
