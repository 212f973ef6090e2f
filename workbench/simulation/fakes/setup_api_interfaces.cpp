#include <cstddef>
#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/device_sets.h"
#include "simulation/fakes/families.h"

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
    call.Arguments({{"set", handle},
                    {"device", device == nullptr ? nullptr : device->instanceId.c_str()},
                    {"interfaceClass", interfaceClass},
                    {"index", index},
                    {"structureSize", data == nullptr ? 0 : data->cbSize}});
    if (const auto error = call.Refused(
            {{set == nullptr, ERROR_INVALID_HANDLE},
             {(deviceData != nullptr && device == nullptr) || interfaceClass == nullptr ||
                  data == nullptr,
              ERROR_INVALID_PARAMETER},
             {data != nullptr && data->cbSize != sizeof(*data), ERROR_INVALID_USER_BUFFER}})) {
        return call.Fails(FALSE, *error);
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
    call.Arguments({{"set", handle},
                    {"path", found == nullptr ? nullptr : found->path.c_str()},
                    {"detail", detail},
                    {"structureSize", detail == nullptr ? 0 : detail->cbSize},
                    {"size", size},
                    {"required", required},
                    {"deviceData", deviceData}});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    if (call.IsPlanned(FaultVariant::ShortSize) && required != nullptr) {
        *required = call.PlannedFault()->error;
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    if (const auto error =
            call.Refused({{set == nullptr, ERROR_INVALID_HANDLE},
                          {found == nullptr, ERROR_INVALID_PARAMETER},
                          {detail == nullptr ? size != 0 : detail->cbSize != sizeof(*detail),
                           ERROR_INVALID_USER_BUFFER}})) {
        return call.Fails(FALSE, *error);
    }
    constexpr std::size_t kFront = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath);
    std::size_t units = found->path.size() + 1;
    std::size_t needed = kFront + units * sizeof(wchar_t);
    const auto& lies = call.world().machine.lies.detailSizes;
    if (const auto lie = lies.find(found->path); lie != lies.end()) {
        needed = lie->second;
        units = std::min(units, (std::max(needed, sizeof(*detail)) - kFront) / sizeof(wchar_t));
    }
    if (required != nullptr) {
        *required = static_cast<DWORD>(needed);
    }
    if (deviceData != nullptr && deviceData->cbSize == sizeof(*deviceData)) {
        Describe(*set, found->device, *deviceData);
    }
    if (detail == nullptr || size < needed) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    if (size < sizeof(*detail)) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    std::wmemcpy(detail->DevicePath, found->path.c_str(), units - 1);
    detail->DevicePath[units - 1] = L'\0';
    return call.Returns(TRUE);
}

}  // namespace

void InstallSetupApiInterfaceFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::SetupDiEnumDeviceInterfaces)>("SetupDiEnumDeviceInterfaces",
                                                         FakeSetupDiEnumDeviceInterfaces),
        Replace<decltype(::SetupDiGetDeviceInterfaceDetailW)>("SetupDiGetDeviceInterfaceDetailW",
                                                              FakeSetupDiGetDeviceInterfaceDetailW),
    });
}

}  // namespace simulation
