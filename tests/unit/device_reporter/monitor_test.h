// What all tests of the device monitor share.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "device_reporter/report_device_info.h"
#include "simulation/simulated_machine.h"
#include "support/recorded_suite.h"

namespace device_tests {

/// 24 hours in nanoseconds.
inline constexpr std::int64_t kDay = 86'400'000'000'000;

inline constexpr char kListLine[] =
    "log 3 Peripheral list(DeviceReporter::ReportDeviceInfo::DoReportDevices)";

using Texts = std::vector<std::string>;

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
    std::int64_t Now() { return World().clock.Steady().value().count(); }
    static void SetConsent(const std::vector<const char*>& answers);

    /// Puts the reporter where a list is due: a device to be listed, so many lists sent, a day ago.
    void MakeDue(std::int32_t reportCount);

    test_support::RecordedSuite suite;
    simulation::SimulatedMachine machine;
    DeviceReporter::ReportDeviceInfo reporter;
};

}  // namespace device_tests
