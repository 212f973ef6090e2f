// What goes wrong in either fill.
#include <string>

#include "unit/device_reporter/either_fill.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using simulation::DeviceProperty;
using simulation::FaultVariant;

class Fill : public device_tests::EitherFill {
protected:
    Fill() {
        machine.devices = device_tests::ManyDevices(3);
        for (simulation::Device& device : machine.devices) {
            device.properties = {DeviceProperty::String(simulation::kClassKey, L"Class"),
                                 DeviceProperty::String(simulation::kNameKey, L"Name")};
            // It can be opened, so that HID interfaces cause no log lines.
            device.interfaces[0].hid.emplace();
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Each, Fill, device_tests::BothFills(), device_tests::FillName);

TEST_P(Fill, IsFalseWhenTheSetCannotBeOpened) {
    Fail("SetupDiGetClassDevsW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Keys(), IsEmpty());
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get class devs, lastError = 5")));
    EXPECT_THAT(CalledFunctions(), ElementsAre("SetupDiGetClassDevsW"));
}

TEST_P(Fill, LogsErrorNumbersUnsigned) {
    Fail("SetupDiGetClassDevsW", 1, 0xE0000203);
    EXPECT_FALSE(Run());
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get class devs, lastError = 3758096899")));
}

TEST_P(Fill, SkipsADeviceWithoutInstanceId) {
    Fail("SetupDiGetDeviceInstanceIdW", 2, ERROR_NOT_FOUND);
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\000", L"USB\\002"));
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get device instance id, lastError = 1168")));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInfo", "index"), ElementsAre("0", "1", "2", "3"));
    EXPECT_EQ(world.journal.Count("CM_Get_DevNode_Status"), 2u);
}

TEST_P(Fill, TakesIdsOfUpTo259Units) {
    machine.devices[0].instanceId = L"USB\\" + std::wstring(255, L'A');
    machine.devices[1].instanceId = L"USB\\" + std::wstring(256, L'B');
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\002", L"USB\\" + std::wstring(255, L'A')));
    EXPECT_THAT(Log(), ElementsAre(Line("fail to get device instance id, lastError = 122")));
}

TEST_P(Fill, ReadsEachIdIntoAClearedBuffer) {
    Fail("SetupDiGetDeviceInstanceIdW", 2, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"", L"USB\\000", L"USB\\002"));
}

TEST_P(Fill, EndsSilentlyWhenTheWalkFails) {
    Fail("SetupDiEnumDeviceInfo", 3, ERROR_GEN_FAILURE);
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\000", L"USB\\001"));
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInfo"), 3u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(Fill, LeavesTheFieldOfAFailingPropertyEmptyWithoutALogLine) {
    machine.devices.resize(1);
    Fail("SetupDiGetDevicePropertyW", 2, ERROR_ACCESS_DENIED);  // The class name.
    EXPECT_TRUE(Run());
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices.begin()->second.className, L"");
    EXPECT_EQ(devices.begin()->second.name, L"Name");
    EXPECT_EQ(world.journal.Count("SetupDiGetDevicePropertyW"), 7u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(Fill, TakesADeviceWhoseStatusIsUnknownForNotRemovable) {
    machine.devices.resize(1);
    machine.devices[0].SetRemovable(true);
    Fail("CM_Get_DevNode_Status", 1, 13);
    EXPECT_TRUE(Run());
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_FALSE(devices.begin()->second.isRemovable);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_P(Fill, FindsNothingOnAnEmptyMachine) {
    machine.devices.clear();
    EXPECT_TRUE(Run());
    EXPECT_THAT(Keys(), IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

}  // namespace
