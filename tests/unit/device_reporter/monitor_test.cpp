#include "unit/device_reporter/monitor_test.h"

#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"

namespace device_tests {
namespace {

simulation::Machine MachineOfTests() {
    simulation::Machine machine;
    machine.steadyNanoseconds = 100 * kDay;
    return machine;
}

}  // namespace

MonitorTest::MonitorTest() : machine(GetModuleHandleW(nullptr), MachineOfTests()) {
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    SetConsent({"1"});
    reporter.lastReportTime = Now();
}

MonitorTest::~MonitorTest() {
    EXPECT_TRUE(World().ledger.Balanced()) << World().ledger;
    EXPECT_TRUE(World().faults.Missed().empty());
    ConsentStore_Reset();
}

void MonitorTest::SetConsent(const std::vector<const char*>& answers) {
    ConsentStore_Reset();
    ConsentStore_SetAnswers(answers.data(), answers.size());
}

void MonitorTest::MakeDue(std::int32_t reportCount) {
    DeviceReporter::DeviceInfo& device = reporter.devices[L"USB\\VID_046D&PID_C52B\\1"];
    device.isRemovable = true;
    device.instanceId = L"USB\\VID_046D&PID_C52B\\1";
    device.vendorId = L"VID_046D&PID_C52B";
    device.className = L"USB";
    reporter.reportCount = reportCount;
    reporter.lastReportTime = Now() - kDay;
}

}  // namespace device_tests
