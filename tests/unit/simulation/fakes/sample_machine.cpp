#include "sample_machine.h"

#include "simulation/well_known.h"

namespace simulation {

Machine SampleMachine() {
    Device hid;
    hid.instanceId = L"HID\\VID_1A2B&PID_0001&MI_00\\7&22&0&0000";
    hid.properties = {DeviceProperty::String(kClassKey, L"Keyboard")};
    hid.interfaces = {
        {kHidInterface, kHidPath, HidAnswers{ERROR_SUCCESS, L"Tastatur", L"Feldherr"}}};

    DisplayPath monitor;
    monitor.sourceAdapter = {0x1000, 0};
    monitor.targetAdapter = {0x1000, 0};
    monitor.targetId = 4352;
    monitor.gdiName = L"\\\\.\\DISPLAY1";
    monitor.friendlyName = L"Helio 27";
    monitor.devicePath = L"\\\\?\\DISPLAY#HEL1234#5&2a3b4c&0&UID4352#{monitor}";
    monitor.edid = std::vector<BYTE>(128, 0x5A);

    Machine machine;
    machine.devices = {hid};
    machine.display.paths = {monitor};
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"DESK\\ann", ERROR_SUCCESS}};
    machine.logons.hostAccount = L"DESK\\ann";
    machine.logons.accounts = {{L"DESK\\ann", L"S-1-5-21-1-2-3-1001"}};
    return machine;
}

}  // namespace simulation
