// Real devices that leave.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "library/device_sources/plain_walk.h"
#include "library/device_sources/registered_devices.h"
#include "simulation/well_known.h"
#include "support/real_devices.h"
#include "support/recorded_log.h"

namespace {

using DeviceReporter::AddAllDevicesToMap;
using DeviceReporter::DeviceMap;

TEST(RealDevices, ThatLeaveStayInTheMap) {
    if (!real_devices::RunsInWine()) {
        GTEST_SKIP() << real_devices::kOnlyInWine;
    }
    test_support::WaitForRealDevices();
    test_support::Timeline timeline;
    const test_support::RecordedLog log(timeline);
    std::vector<simulation::Device> two = real_devices::SampleInventory();
    two.resize(2);
    DeviceMap before;
    EXPECT_TRUE(AddAllDevicesToMap(before));
    DeviceMap devices = before;
    {
        const real_devices::RegisteredDevices arrived(two);
        EXPECT_TRUE(AddAllDevicesToMap(devices));
        EXPECT_EQ(devices.size(), before.size() + 2);
    }
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_EQ(devices.size(), before.size() + 2);
    DeviceMap after;
    EXPECT_TRUE(AddAllDevicesToMap(after));
    EXPECT_EQ(after.size(), before.size());
}

TEST(RealDevices, OfTheTestsAreGoneAfterwards) {
    if (!real_devices::RunsInWine()) {
        GTEST_SKIP() << real_devices::kOnlyInWine;
    }
    test_support::WaitForRealDevices();
    { const real_devices::RegisteredDevices devices(real_devices::SampleInventory()); }
    for (const std::wstring& id : plain_walk::InstanceIds()) {
        EXPECT_EQ(id.find(L"TALLYTEST"), std::wstring::npos) << testing::PrintToString(id);
    }
    for (const GUID& interfaceClass :
         {simulation::kHidInterface, simulation::kUsbDeviceInterface}) {
        for (const plain_walk::Interface& offered : plain_walk::Interfaces(interfaceClass)) {
            EXPECT_EQ(offered.deviceId.find(L"TALLYTEST"), std::wstring::npos)
                << testing::PrintToString(offered.deviceId);
        }
    }
}

}  // namespace
