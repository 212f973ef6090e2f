#include "reliability/visitors.h"

#include "simulation/well_known.h"

namespace reliability_test {

std::string VisitorText(unsigned visitor) { return "VID_A" + std::to_string(100 + visitor); }

std::wstring VisitorId(unsigned visitor) {
    return L"USB\\VID_A" + std::to_wstring(100 + visitor) + L"&PID_0001\\1";
}

simulation::Device Visitor(unsigned visitor) {
    simulation::Device device;
    device.instanceId = VisitorId(visitor);
    device.SetRemovable(true);
    device.properties = {simulation::DeviceProperty::String(simulation::kClassKey, L"USB"),
                         simulation::DeviceProperty::Guid(
                             simulation::kContainerIdKey,
                             GUID{visitor + 1, 0x2222, 0x3333, {4, 5, 6, 7, 8, 9, 10, 11}})};
    device.interfaces.push_back(
        {simulation::kUsbDeviceInterface, L"\\\\?\\" + device.instanceId, std::nullopt});
    return device;
}

}  // namespace reliability_test
