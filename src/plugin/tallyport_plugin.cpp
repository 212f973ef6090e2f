#include "plugin/tallyport_plugin.h"

#include <cstdint>
#include <thread>

#include "device_reporter/report_device_info.h"
#include "platform/wmi_kit.h"
#include "report/timer_report_mgr.h"
#include "reporters/report_bios_info.h"
#include "reporters/report_ec_log_info.h"
#include "reporters/report_popup_block_info.h"
#include "util/kept_at_process_end.h"

namespace {

constexpr std::int32_t kBiosReportHours = 12;
constexpr std::int32_t kPopUpBlockReportHours = 24;
constexpr std::int32_t kDeviceReportHours = 1;
constexpr unsigned int kECLogEventCode = 675;

const ReportBiosInfo biosReporter;
const ReportPopUpBlockInfo popUpBlockReporter;
KeptAtProcessEnd<VrSDK::BiosEventMonitor> biosEventMonitor;
/// Whether the latest subscription succeeded. Stop leaves it as it is. Start and Stop run on the
/// host's thread.
bool biosEventMonitorStarted = false;

/// The list itself goes out once a day at most: the hourly run only asks whether it is due.
void StartDeviceReports(TimerReportMgr& timers) {
    using DeviceReporter::ReportDeviceInfo;
    ReportDeviceInfo& reporter = ReportDeviceInfo::GetInstance();
    if (!ReportDeviceInfo::Init() || reporter.reportCount >= DeviceReporter::kMaxReportCount) {
        return;
    }
    reporter.StartMonitorDevices();
    timers.RegisterReportCallback([&reporter] { reporter.ReportDevices(); }, kDeviceReportHours);
}

/// Runs on the firmware library's delivering thread.
void OnBiosEvent(unsigned int eventCode) {
    if (eventCode == kECLogEventCode) {
        ReportECLogInfo();
    }
}

void StartBiosEvents() {
    biosEventMonitorStarted = biosEventMonitor->StartEventMonitor(&OnBiosEvent) == 0;
}

void StopBiosEvents() {
    if (!biosEventMonitorStarted) {
        return;
    }
    // Kept: the library's stop has always run on a short thread of its own; whether it works on the
    // host's is not known. Its result is dropped: there is nothing to do about a failure.
    std::thread([] { biosEventMonitor->StopEventMonitor(); }).join();
}

}  // namespace

bool TallyportPlugin::Initialize() { return true; }

bool TallyportPlugin::Uninitialize() { return true; }

bool TallyportPlugin::Start() {
    TimerReportMgr& timers = TimerReportMgr::GetInstance();
    timers.RegisterReportCallback([] { biosReporter.OnRecvReportInfo(); }, kBiosReportHours);
    biosReporter.OnRecvReportInfo();
    timers.RegisterReportCallback([] { popUpBlockReporter.OnRecvReportInfo(); },
                                  kPopUpBlockReportHours);
    popUpBlockReporter.OnRecvReportInfo();
    StartDeviceReports(timers);
    timers.Start();
    StartBiosEvents();
    return true;
}

bool TallyportPlugin::Stop() {
    TimerReportMgr::GetInstance().Stop();
    DeviceReporter::ReportDeviceInfo::GetInstance().StopMonitorDevices();
    StopBiosEvents();
    return true;
}
