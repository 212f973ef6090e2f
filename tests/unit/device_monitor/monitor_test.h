// What all tests of the device monitor share.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "device_reporter/report_device_info.h"
#include "simulation/simulated_machine.h"
#include "support/comes_true.h"
#include "support/recorded_suite.h"

namespace device_monitor_test {

/// 24 hours in nanoseconds.
inline constexpr std::int64_t kDay = 86'400'000'000'000;
/// What the private window message is to its senders.
inline constexpr UINT kReportMessage = 2025;

inline constexpr char kCountValue[] =
    "HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount";
inline constexpr char kReadCount[] =
    "read int32 HKLM\\SOFTWARE\\Orbisuite\\DataReportTime:ReportDevicesCount mask 0xF003F";
inline constexpr char kListEvent[] = "event 992614533";
inline constexpr char kListLine[] =
    "log 3 Peripheral list(DeviceReporter::ReportDeviceInfo::DoReportDevices)";
/// Closing the monitor of a reporter that has no window shows as this.
inline constexpr char kStopWithoutWindow[] =
    "log 3 msgWindow is null(DeviceReporter::ReportDeviceInfo::StopMonitorDevices)";

/// How the count is written back.
std::string WriteCount(int count);

using test_support::ComesTrue;

/// A machine without printers and displays whose steady clock stands at a hundred days. The user
/// has agreed, and no list is due. At the end every resource is back and every planned fault was
/// met.
class MonitorTest : public testing::Test {
protected:
    MonitorTest();
    ~MonitorTest() override;

    simulation::World& World() { return machine.world(); }
    simulation::CallJournal& Journal() { return World().journal; }
    test_support::Timeline& Timeline() { return suite.timeline; }

    /// The simulated steady clock in nanoseconds.
    std::int64_t Now();
    void SetConsent(const std::vector<const char*>& answers);

    /// Puts the reporter where a list is due: a device to be listed, so many lists sent, a day ago.
    void MakeDue(std::int32_t reportCount);

    test_support::RecordedSuite suite;
    simulation::SimulatedMachine machine;
    DeviceReporter::ReportDeviceInfo reporter;
};

}  // namespace device_monitor_test
