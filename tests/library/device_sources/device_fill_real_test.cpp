// The fills of the device map on the real system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "library/device_sources/plain_walk.h"
#include "library/device_sources/registered_devices.h"
#include "simulation/well_known.h"
#include "support/comes_true.h"
#include "support/real_devices.h"
#include "support/recorded_log.h"

namespace {

using DeviceReporter::AddAllDevicesToMap;
using DeviceReporter::AddDeviceInterfaceToMap;
using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

class RealDeviceFill : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (real_devices::RunsInWine()) {
            test_support::WaitForRealDevices();
            registered =
                std::make_unique<real_devices::RegisteredDevices>(real_devices::SampleInventory());
        }
    }
    static void TearDownTestSuite() { registered.reset(); }

    void SetUp() override {
        if (!real_devices::RunsInWine()) {
            GTEST_SKIP() << real_devices::kOnlyInWine;
        }
    }

    static void ExpectSame(const DeviceInfo& record, const DeviceInfo& expected) {
        EXPECT_EQ(record.isRemovable, expected.isRemovable);
        EXPECT_EQ(record.instanceId, expected.instanceId);
        EXPECT_EQ(record.parent, expected.parent);
        EXPECT_EQ(record.name, expected.name);
        EXPECT_EQ(record.manufacturer, expected.manufacturer);
        EXPECT_EQ(record.className, expected.className);
        EXPECT_EQ(record.description, expected.description);
        EXPECT_EQ(record.vendorId, expected.vendorId);
        EXPECT_EQ(record.containerId, expected.containerId);
    }

    /// Every expected device and no other is in the map, with what the plain walk says of it.
    void ExpectMap(const DeviceMap& expected) const {
        for (const auto& [id, record] : expected) {
            const auto found = devices.find(id);
            ASSERT_NE(found, devices.end()) << testing::PrintToString(id);
            ExpectSame(found->second, record);
        }
        EXPECT_EQ(devices.size(), expected.size());
    }

    /// Wine does not answer every query for a HID string on a handle that was opened for overlapped
    /// access. Where it did not, the texts of the device node, which are `unasked`, stay.
    void AcceptUnansweredQueries(DeviceMap& expected, const DeviceMap& unasked) const {
        for (const auto& [id, record] : devices) {
            const auto node = unasked.find(id);
            if (node == unasked.end()) {
                continue;
            }
            if (record.name == node->second.name) {
                expected.at(id).name = record.name;
            }
            if (record.manufacturer == node->second.manufacturer) {
                expected.at(id).manufacturer = record.manufacturer;
            }
        }
    }

    /// Fills the map with the HID devices, anew until at least one of their answers shows in it:
    /// see above. False when none ever does.
    bool FillUntilAHidDeviceAnswers(const DeviceMap& unasked) {
        const auto hasAnswered = [&unasked](const auto& device) {
            const DeviceInfo& node = unasked.at(device.first);
            return device.second.name != node.name ||
                   device.second.manufacturer != node.manufacturer;
        };
        return test_support::ComesTrue([&] {
            devices.clear();
            timeline.Clear();
            EXPECT_TRUE(AddDeviceInterfaceToMap(simulation::kHidInterface, devices));
            return std::any_of(devices.begin(), devices.end(), hasAnswered);
        });
    }

    static DeviceMap AllDevices() {
        DeviceMap all;
        for (const std::wstring& id : plain_walk::InstanceIds()) {
            all.emplace(id, plain_walk::Describe(id));
        }
        return all;
    }

    /// The devices of an interface class, without what HID devices say.
    static DeviceMap DevicesWith(const GUID& interfaceClass) {
        DeviceMap some;
        for (const plain_walk::Interface& offered : plain_walk::Interfaces(interfaceClass)) {
            some.emplace(offered.deviceId, plain_walk::Describe(offered.deviceId));
        }
        return some;
    }

    static inline std::unique_ptr<real_devices::RegisteredDevices> registered;
    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    DeviceMap devices;
};

TEST_F(RealDeviceFill, FindsTheDevicesThatAPlainWalkFinds) {
    const DeviceMap expected = AllDevices();
    const auto ours = std::count_if(expected.begin(), expected.end(), [](const auto& device) {
        return device.first.find(L"\\TALLYTEST") != std::wstring::npos;
    });
    ASSERT_EQ(ours, 120);
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    ExpectMap(expected);
    EXPECT_THAT(timeline.Texts(), IsEmpty());
}

TEST_F(RealDeviceFill, ReadsWhatWasWrittenWithADevice) {
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    const DeviceInfo& dock = devices.at(L"USB\\VID_0007&PID_00E5\\TALLYTEST007");
    EXPECT_EQ(dock.parent, L"USB\\ROOT_HUB30\\4&1A2B");
    EXPECT_EQ(dock.name, L"Dock 7\nUSB Composite Device");
    EXPECT_EQ(dock.containerId, L"{C0DE0007-ABC0-4D00-8A00-00000000000F}");
    EXPECT_EQ(dock.vendorId, L"VID_0007&PID_00E5");
    const DeviceInfo& headset = devices.at(
        L"BTHENUM\\{0000110B-0000-1000-8000-00805F9B34FB}_VID&00020007_PID&00E5\\TALLYTEST007");
    EXPECT_EQ(headset.className, L"Bluetooth\nAudio\nX");
    EXPECT_EQ(headset.name, L"Headset Pro");
    EXPECT_EQ(headset.vendorId, L"VID&00020007_PID&00E5");
    const DeviceInfo& card = devices.at(L"PCI\\VEN_0007&DEV_00E5&SUBSYS_22128086\\TALLYTEST007");
    EXPECT_EQ(card.description, L"4294967047");
    EXPECT_EQ(card.manufacturer, L"");
    EXPECT_EQ(card.className, L"");
    EXPECT_EQ(card.name, std::wstring(2047, L'n'));
    EXPECT_EQ(devices.at(L"DISPLAY\\TLY0007\\TALLYTEST007").vendorId, L"DISPLAY\\TLY0007");
    EXPECT_EQ(devices.at(L"ROOT\\SYSTEM7\\TALLYTEST007").name, L"");
}

TEST_F(RealDeviceFill, FindsTheHidDevicesAndAsksThoseThatCanBeOpened) {
    const DeviceMap unasked = DevicesWith(simulation::kHidInterface);
    DeviceMap expected = unasked;
    std::vector<std::string> lines;
    std::size_t opened = 0;
    for (const plain_walk::Interface& offered : plain_walk::Interfaces(simulation::kHidInterface)) {
        const DWORD error = plain_walk::AskHidDevice(offered.path, expected.at(offered.deviceId));
        if (error == ERROR_SUCCESS) {
            ++opened;
            EXPECT_NE(expected.at(offered.deviceId).name, L"");
        } else {
            lines.push_back("log 3 create file failed, lastError = " + std::to_string(error) +
                            "(DeviceReporter::UpdateHidDeviceInfo)");
        }
    }
    EXPECT_GE(expected.size(), 20u);
    EXPECT_GE(opened, 1u) << "Wine gives its mouse and keyboard as HID devices";
    ASSERT_TRUE(FillUntilAHidDeviceAnswers(unasked));
    AcceptUnansweredQueries(expected, unasked);
    ExpectMap(expected);
    EXPECT_THAT(timeline.Texts(), UnorderedElementsAreArray(lines));
}

TEST_F(RealDeviceFill, FindsTheDevicesOfAnotherClassWhoseSetListsNoHidInterfaces) {
    const DeviceMap expected = DevicesWith(simulation::kUsbDeviceInterface);
    EXPECT_GE(expected.size(), 25u);
    EXPECT_TRUE(AddDeviceInterfaceToMap(simulation::kUsbDeviceInterface, devices));
    ExpectMap(expected);
    EXPECT_THAT(timeline.Texts(), IsEmpty());
}

TEST_F(RealDeviceFill, KeepsTheHidDetailsInALaterFullFill) {
    DeviceMap all = AllDevices();
    ASSERT_TRUE(FillUntilAHidDeviceAnswers(all));
    DeviceMap expected = devices;
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    expected.merge(all);  // Only what the HID fill did not find.
    ExpectMap(expected);
}

TEST_F(RealDeviceFill, EndsAtItsLimit) {
    for (unsigned i = 0; devices.size() < 400; ++i) {
        devices.emplace(L"A\\" + std::to_wstring(i), DeviceInfo{});
    }
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_EQ(devices.size(), 500u);
    EXPECT_FALSE(AddAllDevicesToMap(devices));
    EXPECT_EQ(devices.size(), 500u);
    constexpr char kLine[] =
        "log 3 device map size exceeds limit: 500"
        "(DeviceReporter::AddAllDevicesToMap)";
    EXPECT_THAT(timeline.Texts(), ElementsAre(kLine, kLine));
}

}  // namespace
