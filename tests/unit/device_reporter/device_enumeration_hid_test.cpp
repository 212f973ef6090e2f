// HID interfaces in the fill by interface class.
#include <windows.h>
#include <setupapi.h>

#include <optional>
#include <string>

#include "device_reporter/device_enumeration.h"
#include "simulation/well_known.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using DeviceReporter::AddAllDevicesToMap;
using DeviceReporter::AddDeviceInterfaceToMap;
using simulation::kHidInterface;
using simulation::kUsbDeviceInterface;

/// A machine with one mouse, whose class, name and manufacturer come from SetupAPI.
class HidFill : public device_tests::MachineTest {
protected:
    HidFill() {
        using simulation::DeviceProperty;
        simulation::Device mouse = device_tests::PlainDevice(L"HID\\A");
        mouse.properties = {DeviceProperty::String(simulation::kManufacturerKey, L"(Standard)"),
                            DeviceProperty::String(simulation::kNameKey, L"HID mouse")};
        machine.devices = {mouse};
    }

    void AddInterface(const std::wstring& path, std::optional<std::wstring> product,
                      std::optional<std::wstring> manufacturer) {
        simulation::HidAnswers answers;
        answers.product = product;
        answers.manufacturer = manufacturer;
        machine.devices[0].interfaces.push_back({kHidInterface, path, answers});
    }

    std::wstring Name() { return devices.at(L"HID\\A").name; }
    std::wstring Manufacturer() { return devices.at(L"HID\\A").manufacturer; }

    DeviceReporter::DeviceMap devices;
};

TEST_F(HidFill, CompletesARecordBehindItsPropertiesAndALaterFullFillDoesNotOverwriteIt) {
    AddInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker");
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(Name(), L"Product");
    EXPECT_EQ(Manufacturer(), L"Maker");
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
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_EQ(Name(), L"Product");
}

TEST_F(HidFill, IsNotMadeByTheFullFillNorForADeviceThatIsKnownAlready) {
    AddInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker");
    EXPECT_TRUE(AddAllDevicesToMap(devices));
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(Name(), L"HID mouse");
    EXPECT_EQ(world.journal.Count("SetupDiEnumDeviceInterfaces"), 0u);
}

TEST_F(HidFill, OffersEveryHidInterfaceOfADeviceInTurnAlsoBehindOneThatFails) {
    AddInterface(L"\\\\?\\hid#col01", L"First", L"Maker");
    AddInterface(L"\\\\?\\hid#col02", std::nullopt, std::nullopt);
    AddInterface(L"\\\\?\\hid#col03", L"Third", std::nullopt);
    AddInterface(L"\\\\?\\hid#col04", L"Fourth", L"Other");
    Fail("SetupDiGetDeviceInterfaceDetailW", 7, ERROR_INVALID_DATA);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_THAT(Arguments("CreateFileW", "path"),
                ElementsAre("\\\\?\\hid#col01", "\\\\?\\hid#col02", "\\\\?\\hid#col03"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "index"),
                ElementsAre("0", "1", "2", "3", "4"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "structureSize"),
                testing::Each(std::string("32")));
    EXPECT_EQ(Name(), L"Third");
    EXPECT_EQ(Manufacturer(), L"Maker");
}

TEST_F(HidFill, AsksForHidInterfacesWhateverClassItWasGiven) {
    machine.devices[0].interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#mouse", {}}};
    AddInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker");
    EXPECT_TRUE(AddDeviceInterfaceToMap(kUsbDeviceInterface, devices));
    EXPECT_THAT(Arguments("SetupDiGetClassDevsW", "classGuid"),
                ElementsAre("{A5DCBF10-6530-11D2-901F-00C04FB951ED}"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "interfaceClass"),
                ElementsAre("{4D1E55B2-F16F-11CF-88CB-001111000030}"));
    EXPECT_THAT(Arguments("SetupDiEnumDeviceInterfaces", "device"), ElementsAre("HID\\A"));
    // The set was opened for another class, so it lists none.
    EXPECT_EQ(Name(), L"HID mouse");
}

HDEVINFO WINAPI OpenSetOfAllInterfaces(const GUID*, const wchar_t* enumerator, HWND window,
                                       DWORD flags) {
    return ImportOverride<decltype(::SetupDiGetClassDevsW)>::Next()(nullptr, enumerator, window,
                                                                    flags | DIGCF_ALLCLASSES);
}

TEST_F(HidFill, CompletesADeviceOfAnotherClassWhenTheSetListsItsHidInterfaces) {
    machine.devices[0].interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#mouse", {}}};
    AddInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker");
    const ImportOverride<decltype(::SetupDiGetClassDevsW)> handMade("SetupDiGetClassDevsW",
                                                                    OpenSetOfAllInterfaces);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kUsbDeviceInterface, devices));
    EXPECT_EQ(Name(), L"Product");
}

BOOL WINAPI ListOtherInterfaces(HDEVINFO set, SP_DEVINFO_DATA* device, const GUID* interfaceClass,
                                DWORD index, SP_DEVICE_INTERFACE_DATA* data) {
    const BOOL listed = ImportOverride<decltype(::SetupDiEnumDeviceInterfaces)>::Next()(
        set, device, interfaceClass, index, data);
    data->InterfaceClassGuid = kUsbDeviceInterface;
    return listed;
}

TEST_F(HidFill, DoesNotOfferInterfacesOfAnotherClassThatTheSystemLists) {
    AddInterface(L"\\\\?\\hid#mouse", L"Product", L"Maker");
    const ImportOverride<decltype(::SetupDiEnumDeviceInterfaces)> handMade(
        "SetupDiEnumDeviceInterfaces", ListOtherInterfaces);
    EXPECT_TRUE(AddDeviceInterfaceToMap(kHidInterface, devices));
    EXPECT_EQ(Name(), L"HID mouse");
    EXPECT_EQ(world.journal.Count("SetupDiGetDeviceInterfaceDetailW"), 0u);
}

}  // namespace
