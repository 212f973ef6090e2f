// What other threads do with the reporter: get hold of it, create its monitor thread and post to
// its window.
#include "device_reporter/report_device_info.h"
#include "report/log_line.h"
#include "util/module_instance.h"
#include "util/module_reference.h"

namespace DeviceReporter {

namespace {

ModuleInstance<ReportDeviceInfo> reporterInstance;

/// Keeps the library, and so the reporter, until the thread's very end. Nobody waits for it: Stop
/// only posts, and the host may unload the library right after.
DWORD WINAPI RunMonitorThread(void* param) {
    ReleaseThisModuleAndExitThread(ReportDeviceInfo::MonitorThreadProc(param));
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
    const auto threadProc = moduleReference ? &RunMonitorThread : &MonitorThreadProc;
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
