#include <windows.h>
// windows.h has to come first.
#include <cfgmgr32.h>

#include <algorithm>
#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/device_sets.h"
#include "simulation/fakes/families.h"

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
    FakeCall call("SetupDiGetClassDevsW", Arg{"classGuid", classGuid},
                  Arg{"enumerator", enumerator}, Arg{"window", window}, Arg{"flags", flags});
    const bool empty = call.IsPlanned(FaultVariant::SuccessWithNothing);
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
    FakeCall call("SetupDiDestroyDeviceInfoList", Arg{"set", handle});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto lock = call.world().Lock();
    return CloseSet(call.world(), handle) ? call.Returns(TRUE)
                                          : call.Fails(FALSE, ERROR_INVALID_HANDLE);
}

BOOL WINAPI FakeSetupDiEnumDeviceInfo(HDEVINFO handle, DWORD index, SP_DEVINFO_DATA* data) {
    FakeCall call("SetupDiEnumDeviceInfo", Arg{"set", handle}, Arg{"index", index},
                  Arg{"structureSize", data == nullptr ? 0 : data->cbSize});
    const auto lock = call.world().Lock();
    const DeviceSet* const set = FindSet(call.world(), handle);
    if (const auto error = call.Refused(
            {{set == nullptr, ERROR_INVALID_HANDLE},
             {data == nullptr, ERROR_INVALID_PARAMETER},
             {data != nullptr && data->cbSize != sizeof(*data), ERROR_INVALID_USER_BUFFER},
             {set != nullptr && index >= set->devices.size(), ERROR_NO_MORE_ITEMS}})) {
        return call.Fails(FALSE, *error);
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
    call.Arguments(
        {{"buffer", static_cast<const void*>(id)}, {"capacity", capacity}, {"required", required}});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    if (const auto error =
            call.Refused({{set == nullptr, ERROR_INVALID_HANDLE},
                          {device == nullptr, ERROR_INVALID_PARAMETER},
                          {id == nullptr && capacity != 0, ERROR_INVALID_USER_BUFFER},
                          {device != nullptr && FindDevice(world.machine, device->instanceId,
                                                           device->place) == nullptr,
                           ERROR_NO_SUCH_DEVINST}})) {
        return call.Fails(FALSE, *error);
    }
    if (world.machine.lies.unterminatedTexts) {
        device->instanceId.copy(id, capacity);
        return call.Returns(TRUE);
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
    call.Arguments(
        {{"key", key == nullptr || !world.journal.IsKept() ? nullptr : KeyText(*key).c_str()},
         {"buffer", buffer},
         {"capacity", capacity},
         {"required", required},
         {"flags", flags}});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        *type = DEVPROP_TYPE_EMPTY;
        return call.Returns(TRUE);
    }
    if (const auto error = call.Refused({{set == nullptr, ERROR_INVALID_HANDLE},
                                         {member == nullptr, ERROR_INVALID_PARAMETER},
                                         {flags != 0, ERROR_INVALID_FLAGS},
                                         {key == nullptr, ERROR_INVALID_DATA},
                                         {type == nullptr || (buffer == nullptr && capacity != 0),
                                          ERROR_INVALID_USER_BUFFER}})) {
        return call.Fails(FALSE, *error);
    }
    const Device* const device = FindDevice(world.machine, member->instanceId, member->place);
    if (device == nullptr) {
        return call.Fails<BOOL>(FALSE, ERROR_NO_SUCH_DEVINST);
    }
    const DeviceProperty* const property = FindProperty(device->properties, *key);
    *type = property != nullptr ? property->type : DEVPROP_TYPE_EMPTY;
    const std::size_t needed = property != nullptr ? property->bytes.size() : 0;
    if (required != nullptr) {
        *required = static_cast<DWORD>(needed);
    }
    if (property == nullptr) {
        return call.Fails(FALSE, ERROR_NOT_FOUND);
    }
    if (capacity < needed) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    std::copy(property->bytes.begin(), property->bytes.end(), buffer);
    return call.Returns(TRUE);
}

CONFIGRET WINAPI FakeCM_Get_DevNode_Status(ULONG* status, ULONG* problem, DEVINST node,
                                           ULONG flags) {
    FakeCall call("CM_Get_DevNode_Status");
    World& world = call.world();
    const auto lock = world.Lock();
    const std::wstring instanceId = InstanceIdOf(world, node);
    call.Arguments({{"node", node}, {"device", instanceId.c_str()}, {"flags", flags}});
    if (const auto error =
            call.Refused({{status == nullptr || problem == nullptr, CR_INVALID_POINTER},
                          {flags != 0, CR_INVALID_FLAG},
                          {instanceId.empty(), CR_INVALID_DEVNODE}})) {
        return call.ReturnsStatus(static_cast<CONFIGRET>(*error));
    }
    const Device* const device = FindDevice(world.machine, instanceId, node - 1);
    if (device == nullptr || !device->present) {
        return call.ReturnsStatus<CONFIGRET>(CR_NO_SUCH_DEVNODE);
    }
    if (device->statusResult != CR_SUCCESS) {
        return call.ReturnsStatus(device->statusResult);
    }
    *status = device->status;
    *problem = device->problem;
    return call.ReturnsStatus<CONFIGRET>(CR_SUCCESS);
}

}  // namespace

void InstallSetupApiFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::SetupDiGetClassDevsW)>("SetupDiGetClassDevsW", FakeSetupDiGetClassDevsW),
        Replace<decltype(::SetupDiDestroyDeviceInfoList)>("SetupDiDestroyDeviceInfoList",
                                                          FakeSetupDiDestroyDeviceInfoList),
        Replace<decltype(::SetupDiEnumDeviceInfo)>("SetupDiEnumDeviceInfo",
                                                   FakeSetupDiEnumDeviceInfo),
        Replace<decltype(::SetupDiGetDeviceInstanceIdW)>("SetupDiGetDeviceInstanceIdW",
                                                         FakeSetupDiGetDeviceInstanceIdW),
        Replace<decltype(::SetupDiGetDevicePropertyW)>("SetupDiGetDevicePropertyW",
                                                       FakeSetupDiGetDevicePropertyW),
        Replace<decltype(::CM_Get_DevNode_Status)>("CM_Get_DevNode_Status",
                                                   FakeCM_Get_DevNode_Status),
    });
}

}  // namespace simulation
