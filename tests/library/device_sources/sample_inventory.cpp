#include <cwchar>
#include <string>
#include <vector>

#include "library/device_sources/registered_devices.h"
#include "simulation/well_known.h"

namespace real_devices {
namespace {

using simulation::Device;
using simulation::DeviceProperty;

GUID Container(unsigned number) {
    return {0xC0DE0000 + number, 0xAbC0, 0x4D00, {0x8A, 0, 0, 0, 0, 0, 0, 0x0F}};
}

/// Formats an instance id with the device's number, twice where the format has room for it.
std::wstring Id(const wchar_t* format, unsigned number) {
    wchar_t id[200];
    std::swprintf(id, 200, format, number, number);
    return id;
}

Device UsbDevice(unsigned number) {
    Device device;
    device.instanceId = Id(L"usb\\vid_%04x&pid_00e5\\tallytest%03u", number);
    device.properties = {
        DeviceProperty::String(simulation::kParentKey, L"USB\\ROOT_HUB30\\4&1A2B"),
        DeviceProperty::String(simulation::kClassKey, L"USB"),
        DeviceProperty::String(simulation::kManufacturerKey, L"(Standard USB host controller)"),
        DeviceProperty::String(simulation::kDeviceDescKey, L"USB Composite Device"),
        DeviceProperty::String(simulation::kFriendlyNameKey, Id(L"Dock %u", number)),
        DeviceProperty::String(simulation::kNameKey, L"USB Composite Device"),
        DeviceProperty::Guid(simulation::kContainerIdKey, Container(number))};
    device.interfaces = {{simulation::kUsbDeviceInterface, {}, {}}};
    return device;
}

Device HidDevice(unsigned number) {
    Device device;
    device.instanceId = Id(L"HID\\VID_%04X&PID_00E5&COL01\\TALLYTEST%03u", number);
    device.properties = {DeviceProperty::String(simulation::kManufacturerKey, L"\u7F57\u6280"),
                         DeviceProperty::String(simulation::kNameKey, L"HID-konformes Ger\u00E4t"),
                         DeviceProperty::Guid(simulation::kContainerIdKey, Container(number))};
    device.interfaces = {{simulation::kHidInterface, {}, {}}};
    if (number % 4 == 1) {
        device.interfaces.push_back({simulation::kUsbDeviceInterface, {}, {}});
    }
    return device;
}

Device BluetoothDevice(unsigned number) {
    Device device;
    device.instanceId =
        Id(L"BTHENUM\\{0000110B-0000-1000-8000-00805F9B34FB}"
           L"_VID&0002%04X_PID&00E5\\TALLYTEST%03u",
           number);
    device.properties = {
        DeviceProperty::StringList(simulation::kClassKey, {L"Bluetooth", L"Audio", L"Blue", L"X"}),
        DeviceProperty::String(simulation::kFriendlyNameKey, L"Headset Pro"),
        DeviceProperty::String(simulation::kNameKey, L"Headset")};
    return device;
}

Device PciDevice(unsigned number) {
    Device device;
    device.instanceId = Id(L"PCI\\VEN_%04X&DEV_00E5&SUBSYS_22128086\\TALLYTEST%03u", number);
    device.properties = {
        DeviceProperty::UInt32(simulation::kDeviceDescKey, 0xFFFFFF00 + number),
        DeviceProperty::Raw(simulation::kManufacturerKey, DEVPROP_TYPE_FILETIME,
                            std::vector<BYTE>(8, 'x')),
        // Too long for the buffer of a caller that offers 4096 bytes, then just short enough.
        DeviceProperty::String(simulation::kClassKey, std::wstring(2048, L'c')),
        DeviceProperty::String(simulation::kNameKey, std::wstring(2047, L'n'))};
    return device;
}

Device Monitor(unsigned number) {
    Device device;
    device.instanceId = Id(L"DISPLAY\\TLY%04X\\TALLYTEST%03u", number);
    device.properties = {DeviceProperty::String(simulation::kFriendlyNameKey, L""),
                         DeviceProperty::String(simulation::kNameKey, L"Monitor"),
                         DeviceProperty::Raw(simulation::kParentKey, DEVPROP_TYPE_BOOLEAN, {0xFF})};
    return device;
}

Device BareDevice(unsigned number) {
    Device device;
    device.instanceId = Id(L"root\\system%u\\TallyTest%03u", number);
    return device;
}

}  // namespace

std::vector<Device> SampleInventory() {
    std::vector<Device> devices;
    for (unsigned number = 0; number < 20; ++number) {
        for (const auto make :
             {UsbDevice, HidDevice, BluetoothDevice, PciDevice, Monitor, BareDevice}) {
            devices.push_back(make(number));
        }
    }
    return devices;
}

}  // namespace real_devices
