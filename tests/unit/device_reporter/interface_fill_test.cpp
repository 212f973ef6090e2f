#include <windows.h>
// windows.h has to come first.
#include <setupapi.h>

#include <string>
#include <vector>

#include "device_reporter/device_enumeration.h"
#include "unit/device_reporter/import_override.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace {

using device_tests::ElementsAre;
using device_tests::HidInterface;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using device_tests::PlainDevice;
using DeviceReporter::AddAllDevicesToMap;
using DeviceReporter::AddDeviceInterfaceToMap;
using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;
using simulation::DeviceProperty;
using simulation::kHidInterface;
using simulation::kUsbDeviceInterface;

class InterfaceFill : public device_tests::MachineTest {
protected:
    /// Name and manufacturer come from SetupAPI.
    static simulation::Device Mouse() {
        simulation::Device mouse = PlainDevice(L"HID\\VID_046D&PID_C077\\7&1");
        mouse.properties = {DeviceProperty::String(simulation::kManufacturerKey, L"(Standard)"),
                            DeviceProperty::String(simulation::kClassKey, L"Mouse"),
                            DeviceProperty::String(simulation::kNameKey, L"HID mouse")};
        return mouse;
    }

    DeviceMap devices;
};

TEST_F(InterfaceFill, CompletesAHidDeviceWithItsOwnStrings) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"USB Optical Mouse", L"Maker")};
    machine.devices = {mouse};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    ASSERT_EQ(devices.size(), 1u);
    const DeviceInfo& record = devices.at(L"HID\\VID_046D&PID_C077\\7&1");
    EXPECT_EQ(record.name, L"USB Optical Mouse");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.className, L"Mouse");
    EXPECT_EQ(record.vendorId, L"VID_046D&PID_C077");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(InterfaceFill, AsksForPresentDevicesWithThatInterface) {
    machine.devices = {PlainDevice(L"USB\\A"), PlainDevice(L"USB\\B"), PlainDevice(L"USB\\C")};
    machine.devices[1].interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#b", {}}};
    machine.devices[2].interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#c", {}}};
    machine.devices[2].present = false;
    EXPECT_TRUE(AddDeviceInterfaceToMap(kUsbDeviceInterface, devices));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices.count(L"USB\\B"), 1u);
    const simulation::JournalEntry call = Calls("SetupDiGetClassDevsW").at(0);
    EXPECT_EQ(call["classGuid"], "{A5DCBF10-6530-11D2-901F-00C04FB951ED}");
    EXPECT_EQ(call["enumerator"], "null");
    EXPECT_EQ(call["window"], "null");
    EXPECT_EQ(call["flags"], "18");
}

TEST_F(InterfaceFill, KeepsADeviceWhoseInterfacesCannotBeListed) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"USB Optical Mouse", L"Maker")};
    machine.devices = {mouse};
    Fail("SetupDiEnumDeviceInterfaces", 1, ERROR_GEN_FAILURE);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices.at(L"HID\\VID_046D&PID_C077\\7&1").name, L"HID mouse");
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInterfaces"), 1u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(InterfaceFill, ReadsTheInterfacesBehindThePropertiesOfTheirDevice) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {mouse};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_THAT(
        CalledFunctions(),
        ElementsAre(
            "SetupDiGetClassDevsW", "SetupDiEnumDeviceInfo", "SetupDiGetDeviceInstanceIdW",
            "CM_Get_DevNode_Status", "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW",
            "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW",
            "SetupDiGetDevicePropertyW", "SetupDiGetDevicePropertyW", "SetupDiEnumDeviceInterfaces",
            "SetupDiGetDeviceInterfaceDetailW", "GlobalAlloc", "SetupDiGetDeviceInterfaceDetailW",
            "CreateFileW", "HidD_GetProductString", "HidD_GetManufacturerString", "CloseHandle",
            "GlobalFree", "SetupDiEnumDeviceInterfaces", "SetupDiEnumDeviceInfo",
            "SetupDiDestroyDeviceInfoList"));
}

TEST_F(InterfaceFill, OffersEveryHidInterfaceOfADeviceInTurn) {
    simulation::Device keyboard = Mouse();
    keyboard.interfaces = {HidInterface(L"\\\\?\\hid#col01", L"First", L"Maker"),
                           HidInterface(L"\\\\?\\hid#col02", std::nullopt, std::nullopt),
                           HidInterface(L"\\\\?\\hid#col03", L"Third", std::nullopt)};
    machine.devices = {keyboard};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_THAT(Arguments("CreateFileW", "path"),
                ElementsAre("\\\\?\\hid#col01", "\\\\?\\hid#col02", "\\\\?\\hid#col03"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "index"), ElementsAre("0", "1", "2", "3"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "structureSize"),
                testing::Each(std::string("32")));
    EXPECT_EQ(devices.begin()->second.name, L"Third");
    EXPECT_EQ(devices.begin()->second.manufacturer, L"Maker");
}

TEST_F(InterfaceFill, KeepsADeviceThatCannotBeOpenedWithItsSetupTexts) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    mouse.interfaces[0].hid->openError = ERROR_ACCESS_DENIED;
    machine.devices = {mouse};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices.begin()->second.name, L"HID mouse");
    EXPECT_EQ(devices.begin()->second.manufacturer, L"(Standard)");
    EXPECT_THAT(Log(), ElementsAre("log 3 create file failed, lastError = 5"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
}

TEST_F(InterfaceFill, GoesOnWithTheNextInterfaceWhenOneFails) {
    simulation::Device keyboard = Mouse();
    keyboard.interfaces = {HidInterface(L"\\\\?\\hid#col01", L"First", L"Maker"),
                           HidInterface(L"\\\\?\\hid#col02", L"Second", L"Other")};
    machine.devices = {keyboard};
    Fail("SetupDiGetDeviceInterfaceDetailW", 1, ERROR_INVALID_DATA);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(devices.begin()->second.name, L"Second");
    EXPECT_THAT(Log(), ElementsAre("log 3 fail to get device interface detail, lastError = 13"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
}

TEST_F(InterfaceFill, AsksForHidInterfacesWhateverClassItWasGiven) {
    simulation::Device device = Mouse();
    device.interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#mouse", {}},
                         HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {device};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kUsbDeviceInterface, devices));
    const std::vector<simulation::JournalEntry> calls = Calls("SetupDiEnumDeviceInterfaces");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0]["interfaceClass"], "{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(calls[0]["device"], "HID\\VID_046D&PID_C077\\7&1");
    // The set was opened for another class, so it lists none. No other set is opened.
    EXPECT_EQ(world.journal.Count("SetupDiGetClassDevsW"), 1u);
    EXPECT_EQ(devices.begin()->second.name, L"HID mouse");
}

HDEVINFO WINAPI OpenSetOfAllInterfaces(const GUID*, const wchar_t* enumerator, HWND window,
                                       DWORD flags) {
    return ImportOverride<decltype(::SetupDiGetClassDevsW)>::Next()(nullptr, enumerator, window,
                                                                    flags | DIGCF_ALLCLASSES);
}

TEST_F(InterfaceFill, CompletesADeviceOfAnotherClassWhenTheSetListsItsHidInterfaces) {
    simulation::Device device = Mouse();
    device.interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#mouse", {}},
                         HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {device};
    const ImportOverride<decltype(::SetupDiGetClassDevsW)> handMade("SetupDiGetClassDevsW",
                                                                    OpenSetOfAllInterfaces);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kUsbDeviceInterface, devices));
    EXPECT_EQ(devices.begin()->second.name, L"Product");
    EXPECT_EQ(devices.begin()->second.manufacturer, L"Maker");
}

BOOL WINAPI ListOtherInterfaces(HDEVINFO set, SP_DEVINFO_DATA* device, const GUID* interfaceClass,
                                DWORD index, SP_DEVICE_INTERFACE_DATA* data) {
    const BOOL listed = ImportOverride<decltype(::SetupDiEnumDeviceInterfaces)>::Next()(
        set, device, interfaceClass, index, data);
    data->InterfaceClassGuid = kUsbDeviceInterface;
    return listed;
}

TEST_F(InterfaceFill, DoesNotOfferInterfacesOfAnotherClassThatTheSystemLists) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {mouse};
    const ImportOverride<decltype(::SetupDiEnumDeviceInterfaces)> handMade(
        "SetupDiEnumDeviceInterfaces", ListOtherInterfaces);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(devices.begin()->second.name, L"HID mouse");
    EXPECT_EQ(world.journal.Count("SetupDiGetDeviceInterfaceDetailW"), 0u);
}

TEST_F(InterfaceFill, DoesNotTouchADeviceThatIsKnownAlready) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {mouse};
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    world.journal.Clear();
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(devices.begin()->second.name, L"HID mouse");
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInterfaces"), 0u);
}

TEST_F(InterfaceFill, LeavesHidDetailsThatALaterFullFillDoesNotOverwrite) {
    simulation::Device mouse = Mouse();
    mouse.interfaces = {HidInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker")};
    machine.devices = {mouse, PlainDevice(L"USB\\A")};
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    ASSERT_EQ(devices.size(), 2u);
    EXPECT_EQ(devices.at(L"HID\\VID_046D&PID_C077\\7&1").name, L"Product");
    EXPECT_EQ(devices.at(L"HID\\VID_046D&PID_C077\\7&1").manufacturer, L"Maker");
}

}  // namespace
