#include "simulation/fakes/setup_api_interfaces.h"

#include <cstddef>
#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/device_sets.h"

namespace simulation {
namespace {

/// Without a device, the interfaces of all devices count.
BOOL WINAPI FakeSetupDiEnumDeviceInterfaces(HDEVINFO handle, SP_DEVINFO_DATA* deviceData,
                                            const GUID* interfaceClass, DWORD index,
                                            SP_DEVICE_INTERFACE_DATA* data) {
    FakeCall call("SetupDiEnumDeviceInterfaces");
    const auto lock = call.world().Lock();
    const DeviceSet* const set = FindSet(call.world(), handle);
    const SetDevice* const device = FindDevice(set, deviceData);
    call.Argument("set", handle);
    call.Argument("device", device == nullptr ? nullptr : device->instanceId.c_str());
    GuidArgument(call, "interfaceClass", interfaceClass);
    call.Argument("index", index);
    call.Argument("structureSize", data == nullptr ? 0 : data->cbSize);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    if (set == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if ((deviceData != nullptr && device == nullptr) || interfaceClass == nullptr ||
        data == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (data->cbSize != sizeof(*data)) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    DWORD matching = 0;
    for (std::size_t i = 0; i < set->interfaces.size(); ++i) {
        const SetInterface& candidate = set->interfaces[i];
        const bool ofDevice = device == nullptr || &set->devices[candidate.device] == device;
        if (ofDevice && candidate.interfaceClass == *interfaceClass && matching++ == index) {
            Describe(*set, i, *data);
            return call.Returns(TRUE);
        }
    }
    return call.Fails(FALSE, ERROR_NO_MORE_ITEMS);
}

/// Plans: ShortSize asks for a block of as many bytes as the planned number, SuccessWithNothing
/// leaves block and size as they are.
BOOL WINAPI FakeSetupDiGetDeviceInterfaceDetailW(HDEVINFO handle, SP_DEVICE_INTERFACE_DATA* data,
                                                 SP_DEVICE_INTERFACE_DETAIL_DATA_W* detail,
                                                 DWORD size, DWORD* required,
                                                 SP_DEVINFO_DATA* deviceData) {
    FakeCall call("SetupDiGetDeviceInterfaceDetailW");
    const auto lock = call.world().Lock();
    const DeviceSet* const set = FindSet(call.world(), handle);
    const SetInterface* const found = FindInterface(set, data);
    call.Argument("set", handle);
    call.Argument("path", found == nullptr ? nullptr : found->path.c_str());
    call.Argument("detail", detail);
    call.Argument("structureSize", detail == nullptr ? 0 : detail->cbSize);
    call.Argument("size", size);
    call.Argument("required", required);
    call.Argument("deviceData", deviceData);
    if (IsPlanned(call, FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    if (IsPlanned(call, FaultVariant::ShortSize) && required != nullptr) {
        *required = call.PlannedFault()->error;
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    if (set == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (found == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (detail == nullptr ? size != 0 : detail->cbSize != sizeof(*detail)) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    const std::size_t needed = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath) +
                               (found->path.size() + 1) * sizeof(wchar_t);
    if (required != nullptr) {
        *required = static_cast<DWORD>(needed);
    }
    if (deviceData != nullptr && deviceData->cbSize == sizeof(*deviceData)) {
        Describe(*set, found->device, *deviceData);
    }
    if (size < needed) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    std::wmemcpy(detail->DevicePath, found->path.c_str(), found->path.size() + 1);
    return call.Returns(TRUE);
}

}  // namespace

void InstallSetupApiInterfaceFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::SetupDiEnumDeviceInterfaces)>(
        "SetupDiEnumDeviceInterfaces", FakeSetupDiEnumDeviceInterfaces);
    redirection.RedirectIfImported<decltype(::SetupDiGetDeviceInterfaceDetailW)>(
        "SetupDiGetDeviceInterfaceDetailW", FakeSetupDiGetDeviceInterfaceDetailW);
}

}  // namespace simulation
