#include "sample_machine.h"

#include <cwchar>
#include <string>

#include "simulation/well_known.h"

namespace benchmarks {
namespace {

using simulation::DeviceProperty;

struct Kind {
    const wchar_t* id;  ///< Format with the device's number, twice.
    const wchar_t* parent;
    const wchar_t* className;
    const wchar_t* manufacturer;
    const wchar_t* description;
    const wchar_t* friendlyName;  ///< Format with the device's number.
    const wchar_t* name;
};

constexpr Kind kKinds[] = {
    {L"HID\\VID_%04X&PID_C52B&MI_01&COL02\\8&2F3A1B0C&0&%04u",
     L"USB\\VID_046D&PID_C52B&MI_01\\7&1A", L"HIDClass", L"(Standard system devices)",
     L"HID-compliant vendor-defined device", L"Wireless receiver %u",
     L"HID-compliant vendor-defined device"},
    {L"BTHENUM\\{0000110B-0000-1000-8000-00805F9B34FB}_VID&0002%04X_PID&0A17\\7&3C&%04u",
     L"BTHENUM\\DEV_94DB56C1E2F0\\7&3C", L"MEDIA", L"Corvane Audio", L"Bluetooth audio sink",
     L"Headset %u of the meeting room", L"Headset Pro 700"},
    {L"USB\\VID_%04X&PID_00E5\\6&2B1C&0&%04u", L"USB\\ROOT_HUB30\\4&1A2B3C4D&0&0", L"USB",
     L"(Standard USB host controller)", L"USB Composite Device", L"Dock %u, port replicator",
     L"USB Composite Device"},
    {L"PCI\\VEN_%04X&DEV_15BC&SUBSYS_22128086&REV_10\\3&11583659&0&%04u",
     L"PCI\\VEN_8086&DEV_7AB8\\3&11", L"Net", L"Netweft", L"Netweft Gigabit Ethernet Controller",
     L"Netweft Ethernet #%u", L"Netweft Gigabit Ethernet Controller"},
};

std::wstring Format(const wchar_t* format, unsigned number) {
    wchar_t text[200];
    std::swprintf(text, 200, format, number, number);
    return text;
}

}  // namespace

std::vector<simulation::Device> SampleDevices(std::size_t count) {
    std::vector<simulation::Device> devices;
    for (unsigned number = 0; number < count; ++number) {
        const Kind& kind = kKinds[number % std::size(kKinds)];
        simulation::Device device;
        device.instanceId = Format(kind.id, number);
        device.SetRemovable(true);
        device.properties = {
            DeviceProperty::String(simulation::kParentKey, kind.parent),
            DeviceProperty::String(simulation::kClassKey, kind.className),
            DeviceProperty::String(simulation::kManufacturerKey, kind.manufacturer),
            DeviceProperty::String(simulation::kDeviceDescKey, kind.description),
            DeviceProperty::String(simulation::kFriendlyNameKey, Format(kind.friendlyName, number)),
            DeviceProperty::String(simulation::kNameKey, kind.name),
            DeviceProperty::Guid(
                simulation::kContainerIdKey,
                {0xC0DE0000 + number / 8, 0xABC0, 0x4D00, {0x8A, 1, 2, 3, 4, 5, 6, 7}})};
        devices.push_back(device);
    }
    return devices;
}

std::vector<simulation::Printer> SamplePrinters(std::size_t count) {
    std::vector<simulation::Printer> printers;
    for (std::size_t i = 0; i < count; ++i) {
        printers.push_back(
            {L"Printer " + std::to_wstring(i) + L" on the second floor",
             L"Inkwell Laser 4200 PCL 6", L"RAW", L"IP_10.1.7.23",
             simulation::PrinterDriver{L"Inkwell", L"USBPRINT\\InkwellLaserJet_4A21"}});
    }
    return printers;
}

simulation::Display SampleDisplay(std::size_t paths) {
    simulation::Display display;
    for (UINT32 i = 0; i < paths; ++i) {
        simulation::DisplayPath path;
        path.sourceId = path.targetId = i;
        path.gdiName = L"\\\\.\\DISPLAY" + std::to_wstring(i);
        path.friendlyName = L"Lumen 27 QHD";
        path.devicePath = L"\\\\?\\DISPLAY#HWP2718#4&1f9d0a6b&0&UID" + std::to_wstring(i) +
                          L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}";
        path.edid.emplace(256);
        // A manufacturer id is all that the plug-in looks at.
        (*path.edid)[8] = 0x22;
        (*path.edid)[9] = 0xF0;
        display.paths.push_back(path);
    }
    return display;
}

}  // namespace benchmarks
