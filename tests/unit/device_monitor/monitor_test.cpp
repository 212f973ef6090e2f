#include "unit/device_monitor/monitor_test.h"

#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"

namespace device_monitor_test {
namespace {

simulation::Machine MachineOfTests() {
    simulation::Machine machine;
    machine.clocks.steadyNanoseconds = 100 * kDay;
    return machine;
}

DeviceReporter::DeviceInfo ListedDevice() {
    DeviceReporter::DeviceInfo device;
    device.isRemovable = true;
    device.instanceId = L"USB\\VID_046D&PID_C52B\\1";
    device.vendorId = L"VID_046D&PID_C52B";
    device.className = L"USB";
    return device;
}

}  // namespace

std::string WriteCount(int count) {
    return "write int32 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount mask "
           "0xF003F = " +
           std::to_string(count);
}

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

std::int64_t MonitorTest::Now() { return World().clock.Steady().value().count(); }

void MonitorTest::SetConsent(const std::vector<const char*>& answers) {
    ConsentStore_Reset();
    ConsentStore_SetAnswers(answers.data(), answers.size());
}

void MonitorTest::MakeDue(std::int32_t reportCount) {
    const DeviceReporter::DeviceInfo device = ListedDevice();
    reporter.devices[device.instanceId] = device;
    reporter.reportCount = reportCount;
    reporter.lastReportTime = Now() - kDay;
}

}  // namespace device_monitor_test
