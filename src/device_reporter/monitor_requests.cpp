// What other threads do with the reporter: get hold of it, create its monitor thread and post to
// its window.
#include <atomic>
#include <utility>

#include "device_reporter/report_device_info.h"
#include "report/log_line.h"
#include "util/module_instance.h"
#include "util/module_reference.h"

namespace DeviceReporter {

namespace {

ModuleInstance<ReportDeviceInfo> reporterInstance;

/// This library's handle, from the creator of a monitor thread to the thread, whose parameter is
/// the reporter. The same for every thread.
std::atomic<HMODULE> handedOverModule{nullptr};

/// Keeps the library, and so the reporter, until the thread's very end. Nobody waits for it: Stop
/// only posts, and the host may unload the library right after Stop.
DWORD WINAPI RunMonitorThread(void* param) {
    ScopedModule moduleReference(handedOverModule);
    const DWORD status = ReportDeviceInfo::MonitorThreadProc(param);
    ReleaseThisModuleAndExitThread(std::move(moduleReference), status);
}

void PostToMonitor(HWND msgWindow, UINT message, const char* functionName) {
    if (msgWindow == nullptr) {
        WriteLogLine(LOG_LEVEL_NORMAL, functionName, "msgWindow is null");
        return;
    }
    PostMessageW(msgWindow, message, /*wParam=*/0, /*lParam=*/0);
}

}  // namespace

ReportDeviceInfo& ReportDeviceInfo::GetInstance() { return *reporterInstance; }

void ReportDeviceInfo::StartMonitorDevices() {
    ScopedModule moduleReference = ReferenceThisModule();
    // A thread that got no reference must not give one back: that would be the host's.
    LPTHREAD_START_ROUTINE threadProc = &MonitorThreadProc;
    if (moduleReference) {
        handedOverModule = moduleReference.Get();
        threadProc = &RunMonitorThread;
    }
    const ScopedKernelHandle thread(CreateThread(/*lpThreadAttributes=*/nullptr, /*dwStackSize=*/0,
                                                 threadProc, this, /*dwCreationFlags=*/0,
                                                 /*lpThreadId=*/nullptr));
    if (!thread) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_NORMAL, "DeviceReporter::ReportDeviceInfo::StartMonitorDevices",
                     "failed to create monitor thread, lastError = ", error);
        return;
    }
    // The thread gives the reference back when it ends.
    moduleReference.Release();
}

void ReportDeviceInfo::ReportDevices() {
    PostToMonitor(msgWindow, WM_REPORT_DEVICES, "DeviceReporter::ReportDeviceInfo::ReportDevices");
}

void ReportDeviceInfo::StopMonitorDevices() {
    PostToMonitor(msgWindow, WM_CLOSE, "DeviceReporter::ReportDeviceInfo::StopMonitorDevices");
}

}  // namespace DeviceReporter
