#include "device_reporter/report_device_info.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <utility>

#include "device_reporter/device_list_payload.h"
#include "platform/consent_store.h"
#include "platform/edition_adapt.h"
#include "platform/file_kit.h"
#include "report/data_report_time.h"
#include "report/log_line.h"
#include "util/kept_at_process_end.h"
#include "util/module_reference.h"
#include "util/scoped_handle.h"

namespace DeviceReporter {

namespace {

KeptAtProcessEnd<ReportDeviceInfo> reporterInstance;

constexpr char kInitFunction[] = "DeviceReporter::ReportDeviceInfo::Init";
constexpr char kDoReportDevicesFunction[] = "DeviceReporter::ReportDeviceInfo::DoReportDevices";
constexpr wchar_t kReportCountValueName[] = L"ReportDevicesCount";
/// The value of the feature switch on machines that report devices.
constexpr int kFeatureReportsDevices = 3;
constexpr char kAgreed[] = "1";
constexpr std::int64_t kMinTimeBetweenReports =
    std::chrono::nanoseconds(std::chrono::hours(24)).count();

std::int64_t SteadyNow() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Machines of the suite's home market report, and those without a shelf to ask.
bool IsRegionSupported() {
    const ZedSoftShelf* const shelf = ZedSoftShelf::GetInstance();
    return shelf == nullptr || shelf->IsSupportProperty("VRLoginGuide", "china");
}

std::int32_t ReadReportCountReg() {
    std::int32_t count = 0;
    if (!QD::Registry::GetValue(HKEY_LOCAL_MACHINE, kDataReportTimeKey, kReportCountValueName,
                                count, KEY_ALL_ACCESS)) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::ReadReportCountReg",
                     "failed to read reg");
        return 0;
    }
    return count;
}

void WriteReportCountReg(std::int32_t count) {
    if (!QD::Registry::SetValue(HKEY_LOCAL_MACHINE, kDataReportTimeKey, kReportCountValueName,
                                count, KEY_ALL_ACCESS)) {
        WriteLogLine(LOG_LEVEL_NORMAL, "`anonymous-namespace'::WriteReportCountReg",
                     "failed to write reg");
    }
}

/// This library's handle, for RunMonitorThread: the thread's one parameter is the reporter. Every
/// start stores the same value.
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
    // The result is dropped: a window that is gone already gets nothing, without a line.
    PostMessageW(msgWindow, message, /*wParam=*/0, /*lParam=*/0);
}

}  // namespace

ReportDeviceInfo& ReportDeviceInfo::GetInstance() { return *reporterInstance; }

bool ReportDeviceInfo::Init() {
    int feature = 0;
    // The result is dropped: a feature that is not known leaves 0.
    EditionAdapt::FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", feature);
    if (feature != kFeatureReportsDevices) {
        WriteLogLine(LOG_LEVEL_NORMAL, kInitFunction, "machine type not support");
        return false;
    }
    if (!IsRegionSupported()) {
        WriteLogLine(LOG_LEVEL_NORMAL, kInitFunction, "oversea version");
        return false;
    }
    ReportDeviceInfo& reporter = GetInstance();
    reporter.lastReportTime = SteadyNow();
    reporter.reportCount = ReadReportCountReg();
    return true;
}

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

void ReportDeviceInfo::DoReportDevices() {
    if (SteadyNow() - lastReportTime < kMinTimeBetweenReports) {
        return;
    }
    if (AgreementSign::IsAgreeClause() != kAgreed) {
        // Kept: the line asks a second time and shows that answer. The consent library has always
        // been asked twice for each list that is refused.
        WriteLogLine(LOG_LEVEL_NORMAL, kDoReportDevicesFunction,
                     "IsAgreeClause = ", AgreementSign::IsAgreeClause().c_str());
        return;
    }
    if (reportCount < kMaxReportCount) {
        WriteLogLine(LOG_LEVEL_NORMAL, kDoReportDevicesFunction, "Peripheral list");
        SendDeviceList(*this);
        lastReportTime = SteadyNow();
        ++reportCount;
        WriteReportCountReg(reportCount);
        if (reportCount < kMaxReportCount) {
            return;
        }
    }
    StopMonitorDevices();
}

}  // namespace DeviceReporter
