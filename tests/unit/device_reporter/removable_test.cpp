#include <windows.h>
// windows.h has to come first.
#include <cfgmgr32.h>

#include "device_reporter/device_enumeration.h"
#include "unit/device_reporter/import_override.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace {

using device_tests::ImportOverride;
using DeviceReporter::DeviceMap;

class Removable : public device_tests::MachineTest {
protected:
    Removable() { machine.devices = {device_tests::PlainDevice(L"USB\\A")}; }

    bool IsRemovable() {
        DeviceMap devices;
        EXPECT_TRUE(DeviceReporter::AddAllDevicesToMap(devices));
        return devices.at(L"USB\\A").isRemovable;
    }
};

TEST_F(Removable, IsADeviceWhoseStatusHasThatBit) {
    machine.devices[0].status = 0x4000;
    EXPECT_TRUE(IsRemovable());
    machine.devices[0].status = 0xFFFFFFFF;
    EXPECT_TRUE(IsRemovable());
}

TEST_F(Removable, IsNoDeviceWithAllOtherBits) {
    machine.devices[0].status = 0xFFFFFFFF & ~0x4000u;
    EXPECT_FALSE(IsRemovable());
    machine.devices[0].status = 0;
    EXPECT_FALSE(IsRemovable());
}

TEST_F(Removable, DoesNotDependOnTheProblemNumber) {
    machine.devices[0].problem = 0x4000;
    machine.devices[0].status = 0;
    EXPECT_FALSE(IsRemovable());
    machine.devices[0].status = 0x4000;
    EXPECT_TRUE(IsRemovable());
}

CONFIGRET WINAPI FailWithEveryBitSet(ULONG* status, ULONG* problem, DEVINST, ULONG) {
    *status = 0xFFFFFFFF;
    *problem = 0;
    return CR_FAILURE;
}

TEST_F(Removable, IsNoDeviceWhoseStatusQueryFailsWhateverItLeavesBehind) {
    const ImportOverride<decltype(::CM_Get_DevNode_Status)> handMade("CM_Get_DevNode_Status",
                                                                     FailWithEveryBitSet);
    EXPECT_FALSE(IsRemovable());
}

}  // namespace
