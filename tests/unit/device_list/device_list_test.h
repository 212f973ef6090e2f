// What tests of the device list's events share.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "device_reporter/report_device_info.h"
#include "simulation/simulated_machine.h"
#include "support/recorded_suite.h"
#include "support/strict_json.h"
#include "unit/device_list/device_map.h"
#include "unit/device_list/sized_records.h"

namespace device_list_test {

using Keys = std::vector<std::string>;

/// The event's keys in their order.
Keys KeysOf(const test_support::Event& event);

/// A device of class "Mouse" with these texts.
DeviceReporter::DeviceInfo RecordWithTexts(const std::wstring& maker, const std::wstring& desc,
                                           const std::wstring& name);

/// A reporter with one removable device that is not listed itself, on a machine without printers
/// and displays. At the end every resource is back and every planned fault was met.
class DeviceListTest : public testing::Test {
protected:
    DeviceListTest();
    ~DeviceListTest() override;

    simulation::World& World() { return machine.world(); }

    void AddRemovable();
    /// Adds a device that shares the removable device's container.
    void Add(const std::wstring& instanceId, DeviceReporter::DeviceInfo device);
    /// The same for many, with ids that keep their order.
    void AddAll(const std::wstring& prefix, const std::vector<DeviceReporter::DeviceInfo>& devices);
    void AddPrinter(const std::wstring& name);
    /// `monitorId` has seven characters.
    void AddDisplay(const std::wstring& monitorId, const std::wstring& name);

    /// Sends the list; the events that this gave.
    std::vector<test_support::Event> Sent();

    test_support::RecordedSuite suite;
    simulation::SimulatedMachine machine{GetModuleHandleW(nullptr), simulation::Machine{}};
    DeviceReporter::ReportDeviceInfo reporter;
};

}  // namespace device_list_test
