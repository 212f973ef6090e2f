#include "sample_machine.h"

#include "simulation/well_known.h"

namespace simulation {

Machine KeyboardMachine() {
    Device usb;
    usb.instanceId = kUsbId;
    usb.SetRemovable(true);
    usb.properties = {DeviceProperty::String(kClassKey, L"USB")};
    usb.interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#vid_1a2b&pid_0001#5&11&0&2#{usb}", {}}};

    Device hid;
    hid.instanceId = kHidId;
    hid.properties = {DeviceProperty::String(kClassKey, L"Keyboard"),
                      DeviceProperty::Guid(kClassGuidKey, kKeyboardSetupClass),
                      DeviceProperty::UInt32({kUnknownClass, 5}, 7)};
    hid.interfaces = {
        {kHidInterface, kHidPath, HidAnswers{ERROR_SUCCESS, L"Feldherr Tastatur", L"Klavi\u00E9r"}},
        {kUsbDeviceInterface, L"\\\\?\\hid#vid_1a2b&pid_0001&mi_00#7&22&0&0000#{usb}", {}},
        {kHidInterface, kSilentHidPath, HidAnswers{ERROR_ACCESS_DENIED, {}, {}}}};

    Device absent;
    absent.instanceId = kAbsentId;
    absent.present = false;
    absent.interfaces = {{kUsbDeviceInterface, L"\\\\?\\usb#vid_1a2b&pid_0009#{usb}", {}}};

    Machine machine;
    machine.devices = {usb, hid, absent};
    return machine;
}

Machine PrinterMachine() {
    Machine machine;
    machine.printers = {{L"Office Printer 5", L"Generic Driver", L"RAW", L"USB001",
                         PrinterDriver{L"Graphia", L"USBPRINT\\GraphiaOffice5"}},
                        {L"Broken", std::nullopt, std::nullopt, L"FILE:", std::nullopt}};
    return machine;
}

Machine TwoMonitorMachine() {
    DisplayPath first;
    first.sourceAdapter = {0x1000, 0};
    first.targetAdapter = {0x1000, 0};
    first.targetId = 4352;
    first.gdiName = L"\\\\.\\DISPLAY1";
    first.friendlyName = L"Helio 27";
    first.devicePath = L"\\\\?\\DISPLAY#HEL1234#5&2a3b4c&0&UID4352#{monitor}";
    first.edid = std::vector<BYTE>(128, 0x5A);
    first.mode = DisplayMode{2560, 1440, 75, 120, 32};

    DisplayPath second;
    second.sourceAdapter = {0x1000, 0};
    second.targetAdapter = {0x2000, 0};
    second.sourceId = 1;
    second.targetId = 4353;
    second.gdiName = L"\\\\.\\DISPLAY2";
    second.devicePath = L"\\\\?\\DISPLAY#HEL9999#5&2a3b4c&0&UID4353#{monitor}";
    second.mode = std::nullopt;

    Machine machine;
    machine.display = {4, {first, second}};
    return machine;
}

}  // namespace simulation
