#include "simulation/fakes/setup_api.h"

#include <algorithm>
#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/device_nodes.h"
#include "simulation/fakes/device_sets.h"
#include "simulation/fakes/setup_api_interfaces.h"

namespace simulation {
namespace {

/// The device is named by its id: numbers and structures mean nothing to a reader.
const SetDevice* DeviceArgument(FakeCall& call, const DeviceSet* set, const SP_DEVINFO_DATA* data) {
    const SetDevice* const device = FindDevice(set, data);
    call.Argument("device", device == nullptr ? nullptr : device->instanceId.c_str());
    return device;
}

/// Plans: SuccessWithNothing opens an empty set.
HDEVINFO WINAPI FakeSetupDiGetClassDevsW(const GUID* classGuid, const wchar_t* enumerator,
                                         HWND window, DWORD flags) {
    FakeCall call("SetupDiGetClassDevsW");
    GuidArgument(call, "classGuid", classGuid);
    call.Argument("enumerator", enumerator);
    call.Argument("window", window);
    call.Argument("flags", flags);
    const bool empty = IsPlanned(call, FaultVariant::SuccessWithNothing);
    if (call.PlannedFault() && !empty) {
        return call.Fails<HDEVINFO>(INVALID_HANDLE_VALUE);
    }
    if (classGuid == nullptr && (flags & DIGCF_ALLCLASSES) == 0) {
        return call.Fails<HDEVINFO>(INVALID_HANDLE_VALUE, ERROR_INVALID_PARAMETER);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    DeviceSet set = empty ? DeviceSet() : SelectDevices(world, classGuid, enumerator, flags);
    return call.Returns(OpenSet(world, std::move(set), "flags " + std::to_string(flags)));
}

BOOL WINAPI FakeSetupDiDestroyDeviceInfoList(HDEVINFO handle) {
    FakeCall call("SetupDiDestroyDeviceInfoList");
    call.Argument("set", handle);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto lock = call.world().Lock();
    return CloseSet(call.world(), handle) ? call.Returns(TRUE)
                                          : call.Fails(FALSE, ERROR_INVALID_HANDLE);
}

BOOL WINAPI FakeSetupDiEnumDeviceInfo(HDEVINFO handle, DWORD index, SP_DEVINFO_DATA* data) {
    FakeCall call("SetupDiEnumDeviceInfo");
    call.Argument("set", handle);
    call.Argument("index", index);
    call.Argument("structureSize", data == nullptr ? 0 : data->cbSize);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto lock = call.world().Lock();
    const DeviceSet* const set = FindSet(call.world(), handle);
    if (set == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (data == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (data->cbSize != sizeof(*data)) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    if (index >= set->devices.size()) {
        return call.Fails(FALSE, ERROR_NO_MORE_ITEMS);
    }
    Describe(*set, index, *data);
    return call.Returns(TRUE);
}

/// Plans: SuccessWithNothing leaves the buffer as it is.
BOOL WINAPI FakeSetupDiGetDeviceInstanceIdW(HDEVINFO handle, SP_DEVINFO_DATA* data, wchar_t* id,
                                            DWORD capacity, DWORD* required) {
    FakeCall call("SetupDiGetDeviceInstanceIdW");
    World& world = call.world();
    const auto lock = world.Lock();
    const DeviceSet* const set = FindSet(world, handle);
    call.Argument("set", handle);
    const SetDevice* const device = DeviceArgument(call, set, data);
    call.Argument("buffer", static_cast<const void*>(id));
    call.Argument("capacity", capacity);
    call.Argument("required", required);
    if (IsPlanned(call, FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    if (set == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (device == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (id == nullptr && capacity != 0) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    if (FindDevice(world.machine, device->instanceId) == nullptr) {
        return call.Fails<BOOL>(FALSE, ERROR_NO_SUCH_DEVINST);
    }
    const std::size_t needed = device->instanceId.size() + 1;
    if (required != nullptr) {
        *required = static_cast<DWORD>(needed);
    }
    if (capacity < needed) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    std::wmemcpy(id, device->instanceId.c_str(), needed);
    return call.Returns(TRUE);
}

/// Plans: SuccessWithNothing finds an empty property.
BOOL WINAPI FakeSetupDiGetDevicePropertyW(HDEVINFO handle, SP_DEVINFO_DATA* data,
                                          const DEVPROPKEY* key, DEVPROPTYPE* type, BYTE* buffer,
                                          DWORD capacity, DWORD* required, DWORD flags) {
    FakeCall call("SetupDiGetDevicePropertyW");
    World& world = call.world();
    const auto lock = world.Lock();
    const DeviceSet* const set = FindSet(world, handle);
    call.Argument("set", handle);
    const SetDevice* const member = DeviceArgument(call, set, data);
    call.Argument("key", key == nullptr ? nullptr : KeyText(*key).c_str());
    call.Argument("buffer", buffer);
    call.Argument("capacity", capacity);
    call.Argument("required", required);
    call.Argument("flags", flags);
    if (IsPlanned(call, FaultVariant::SuccessWithNothing)) {
        *type = DEVPROP_TYPE_EMPTY;
        return call.Returns(TRUE);
    }
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    if (set == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (member == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (flags != 0) {
        return call.Fails(FALSE, ERROR_INVALID_FLAGS);
    }
    if (key == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_DATA);
    }
    if (type == nullptr || (buffer == nullptr && capacity != 0)) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    const Device* const device = FindDevice(world.machine, member->instanceId);
    if (device == nullptr) {
        return call.Fails<BOOL>(FALSE, ERROR_NO_SUCH_DEVINST);
    }
    const auto property =
        std::find_if(device->properties.begin(), device->properties.end(),
                     [&](const DeviceProperty& candidate) { return SameKey(candidate.key, *key); });
    const bool found = property != device->properties.end();
    *type = found ? property->type : DEVPROP_TYPE_EMPTY;
    const std::size_t needed = found ? property->bytes.size() : 0;
    if (required != nullptr) {
        *required = static_cast<DWORD>(needed);
    }
    if (!found) {
        return call.Fails(FALSE, ERROR_NOT_FOUND);
    }
    if (capacity < needed) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    std::copy(property->bytes.begin(), property->bytes.end(), buffer);
    return call.Returns(TRUE);
}

}  // namespace

void InstallSetupApiFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::SetupDiGetClassDevsW)>("SetupDiGetClassDevsW",
                                                                     FakeSetupDiGetClassDevsW);
    redirection.RedirectIfImported<decltype(::SetupDiDestroyDeviceInfoList)>(
        "SetupDiDestroyDeviceInfoList", FakeSetupDiDestroyDeviceInfoList);
    redirection.RedirectIfImported<decltype(::SetupDiEnumDeviceInfo)>("SetupDiEnumDeviceInfo",
                                                                      FakeSetupDiEnumDeviceInfo);
    redirection.RedirectIfImported<decltype(::SetupDiGetDeviceInstanceIdW)>(
        "SetupDiGetDeviceInstanceIdW", FakeSetupDiGetDeviceInstanceIdW);
    redirection.RedirectIfImported<decltype(::SetupDiGetDevicePropertyW)>(
        "SetupDiGetDevicePropertyW", FakeSetupDiGetDevicePropertyW);
    InstallSetupApiInterfaceFakes(redirection);
}

}  // namespace simulation
