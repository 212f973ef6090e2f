#include "device_reporter/report_device_info.h"

namespace DeviceReporter {

namespace {

const std::shared_ptr<ReportDeviceInfo> reporter = std::make_shared<ReportDeviceInfo>();

}  // namespace

ReportDeviceInfo& ReportDeviceInfo::GetInstance() { return *reporter; }

}  // namespace DeviceReporter
