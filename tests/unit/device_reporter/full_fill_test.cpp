#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::PlainDevice;
using DeviceReporter::AddAllDevicesToMap;
using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using simulation::DeviceProperty;

class FullFill : public device_tests::MachineTest {
protected:
    std::vector<std::wstring> Keys() const {
        std::vector<std::wstring> keys;
        for (const auto& [key, record] : devices) {
            EXPECT_EQ(record.instanceId, key);
            keys.push_back(key);
        }
        return keys;
    }

    DeviceMap devices;
};

TEST_F(FullFill, MakesARecordOfADevice) {
    simulation::Device device = PlainDevice(L"USB\\VID_046D&PID_C52B\\6&12AB");
    device.SetRemovable(true);
    device.properties = {
        DeviceProperty::String(simulation::kParentKey, L"USB\\ROOT_HUB30\\4&1"),
        DeviceProperty::String(simulation::kClassKey, L"USB"),
        DeviceProperty::String(simulation::kManufacturerKey, L"Maker"),
        DeviceProperty::String(simulation::kDeviceDescKey, L"Composite Device"),
        DeviceProperty::String(simulation::kFriendlyNameKey, L"Receiver"),
        DeviceProperty::String(simulation::kNameKey, L"Composite Device"),
        DeviceProperty::Guid(simulation::kContainerIdKey, simulation::kHidInterface)};
    machine.devices = {device};

    EXPECT_TRUE(AddAllDevicesToMap(devices));

    EXPECT_THAT(Keys(), ElementsAre(L"USB\\VID_046D&PID_C52B\\6&12AB"));
    const DeviceInfo& record = devices.begin()->second;
    EXPECT_TRUE(record.isRemovable);
    EXPECT_EQ(record.parent, L"USB\\ROOT_HUB30\\4&1");
    EXPECT_EQ(record.className, L"USB");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.description, L"Composite Device");
    EXPECT_EQ(record.name, L"Receiver\nComposite Device");
    EXPECT_EQ(record.vendorId, L"VID_046D&PID_C52B");
    EXPECT_EQ(record.containerId, L"{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(FullFill, AsksForAllPresentDevicesOfAllClasses) {
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    ASSERT_EQ(Calls("SetupDiGetClassDevsW").size(), 1u);
    const simulation::JournalEntry call = Calls("SetupDiGetClassDevsW").front();
    EXPECT_EQ(call["classGuid"], "null");
    EXPECT_EQ(call["enumerator"], "null");
    EXPECT_EQ(call["window"], "null");
    EXPECT_EQ(call["flags"], "6");
}

TEST_F(FullFill, LeavesOutDevicesThatAreNotPresent) {
    machine.devices = {PlainDevice(L"USB\\A"), PlainDevice(L"USB\\B")};
    machine.devices[0].present = false;
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\B"));
}

TEST_F(FullFill, CallsTheSystemInOneOrder) {
    machine.devices = {PlainDevice(L"USB\\A")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(
        CalledFunctions(),
        ElementsAre("SetupDiGetClassDevsW", "SetupDiEnumDeviceInfo", "SetupDiGetDeviceInstanceIdW",
                    "CM_Get_DevNode_Status", "SetupDiGetDevicePropertyW",
                    "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW",
                    "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW",
                    "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW",
                    "SetupDiEnumDeviceInfo", "SetupDiDestroyDeviceInfoList"));
}

TEST_F(FullFill, WalksTheSetFromIndexZero) {
    machine.devices = {PlainDevice(L"USB\\A"), PlainDevice(L"USB\\B")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInfo", "index"), ElementsAre("0", "1", "2"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInfo", "structureSize"), ElementsAre("32", "32", "32"));
}

TEST_F(FullFill, AsksForTheInstanceIdWithRoomFor260Units) {
    machine.devices = {PlainDevice(L"USB\\A")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    ASSERT_EQ(Calls("SetupDiGetDeviceInstanceIdW").size(), 1u);
    const simulation::JournalEntry call = Calls("SetupDiGetDeviceInstanceIdW").front();
    EXPECT_EQ(call["capacity"], "260");
    EXPECT_EQ(call["required"], "null");
}

TEST_F(FullFill, AsksTheConfigurationManagerWithoutFlags) {
    machine.devices = {PlainDevice(L"USB\\A")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Arguments("CM_Get_DevNode_Status", "device"), ElementsAre("USB\\A"));
    EXPECT_THAT(Arguments("CM_Get_DevNode_Status", "flags"), ElementsAre("0"));
}

TEST_F(FullFill, DoesNotAskForInterfacesAlthoughADeviceHasThem) {
    machine.devices = device_tests::ManyDevices(1);
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInterfaces"), 0u);
}

TEST_F(FullFill, SortsItsRecordsByTheirIds) {
    machine.devices = {PlainDevice(L"USB\\C"), PlainDevice(L"USB\\A"), PlainDevice(L"ACPI\\B")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Keys(), ElementsAre(L"ACPI\\B", L"USB\\A", L"USB\\C"));
}

TEST_F(FullFill, UpperCasesTheLettersAToZOnly) {
    machine.devices = {PlainDevice(L"usb\\vid_1&aAzZ\\`{m\u00FCller\u00FF\u0131\u0161\uFF41")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\VID_1&AAZZ\\`{M\u00FCLLER\u00FF\u0131\u0161\uFF41"));
}

TEST_F(FullFill, CutsTheVendorIdOutOfTheUpperCasedId) {
    machine.devices = {PlainDevice(L"usb\\vid_046d&pid_c52b\\6&12ab")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_EQ(devices.begin()->second.vendorId, L"VID_046D&PID_C52B");
}

TEST_F(FullFill, TakesIdsThatDifferInLetterCaseForOneDevice) {
    machine.devices = {PlainDevice(L"usb\\vid_1"), PlainDevice(L"USB\\VID_1")};
    machine.devices[0].properties = {DeviceProperty::String(simulation::kNameKey, L"first")};
    machine.devices[1].properties = {DeviceProperty::String(simulation::kNameKey, L"second")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\VID_1"));
    EXPECT_EQ(devices.begin()->second.name, L"first");
}

TEST_F(FullFill, KeepsTheRecordOfADeviceThatIsKnownAlready) {
    machine.devices = {PlainDevice(L"usb\\a")};
    machine.devices[0].SetRemovable(true);
    machine.devices[0].properties = {DeviceProperty::String(simulation::kNameKey, L"new")};
    DeviceInfo known;
    known.instanceId = L"USB\\A";
    known.name = L"old";
    devices.emplace(L"USB\\A", known);

    EXPECT_TRUE(AddAllDevicesToMap(devices));

    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices.begin()->second.name, L"old");
    EXPECT_FALSE(devices.begin()->second.isRemovable);
    EXPECT_EQ(world.journal.Count("CM_Get_DevNode_Status"), 0u);
    EXPECT_EQ(world.journal.Count("SetupDiGetDevicePropertyW"), 0u);
}

TEST_F(FullFill, KeepsDevicesThatHaveGoneSince) {
    machine.devices = {PlainDevice(L"USB\\A")};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    world.Unplug(L"USB\\A");
    world.Plug(PlainDevice(L"USB\\B"));
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_THAT(Keys(), ElementsAre(L"USB\\A", L"USB\\B"));
}

}  // namespace
