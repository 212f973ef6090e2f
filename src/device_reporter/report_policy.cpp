// When a device list may be sent: the gates at start, the daily limit, the user's agreement and the
// limit per installation.
#include <chrono>

#include "device_reporter/device_list_payload.h"
#include "device_reporter/report_device_info.h"
#include "platform/consent_store.h"
#include "platform/edition_adapt.h"
#include "platform/file_kit.h"
#include "report/data_report_time.h"
#include "report/log_line.h"

namespace DeviceReporter {

namespace {

constexpr char kInitName[] = "DeviceReporter::ReportDeviceInfo::Init";
constexpr char kDoReportName[] = "DeviceReporter::ReportDeviceInfo::DoReportDevices";
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

}  // namespace

bool ReportDeviceInfo::Init() {
    int feature = 0;
    EditionAdapt::FeatureSwitch::GetInstance().QueryFeature("ReportDeviceList", feature);
    if (feature != kFeatureReportsDevices) {
        WriteLogLine(LOG_LEVEL_NORMAL, kInitName, "machine type not support");
        return false;
    }
    if (!IsRegionSupported()) {
        WriteLogLine(LOG_LEVEL_NORMAL, kInitName, "oversea version");
        return false;
    }
    ReportDeviceInfo& reporter = GetInstance();
    reporter.lastReportTime = SteadyNow();
    reporter.reportCount = ReadReportCountReg();
    return true;
}

void ReportDeviceInfo::DoReportDevices() {
    if (SteadyNow() - lastReportTime < kMinTimeBetweenReports) {
        return;
    }
    if (AgreementSign::IsAgreeClause() != kAgreed) {
        WriteLogLine(LOG_LEVEL_NORMAL, kDoReportName,
                     "IsAgreeClause = ", AgreementSign::IsAgreeClause().c_str());
        return;
    }
    if (reportCount < kMaxReportCount) {
        WriteLogLine(LOG_LEVEL_NORMAL, kDoReportName, "Peripheral list");
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
