// windows.h has to come first.
#include "instant/instant_calls.h"
// Behind it.
#include <cfgmgr32.h>
#include <setupapi.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace benchmarks {
namespace {

std::vector<simulation::Device> answers;

HDEVINFO WINAPI GetClassDevs(const GUID*, const wchar_t*, HWND, DWORD) { return &answers; }

BOOL WINAPI DestroyDeviceInfoList(HDEVINFO) { return TRUE; }

BOOL WINAPI EnumDeviceInfo(HDEVINFO, DWORD index, SP_DEVINFO_DATA* device) {
    if (index >= answers.size()) {
        SetLastError(ERROR_NO_MORE_ITEMS);
        return FALSE;
    }
    device->DevInst = index;
    return TRUE;
}

BOOL WINAPI GetDeviceInstanceId(HDEVINFO, SP_DEVINFO_DATA* device, wchar_t* id, DWORD, DWORD*) {
    const std::wstring& text = answers[device->DevInst].instanceId;
    std::memcpy(id, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return TRUE;
}

CONFIGRET WINAPI GetDevNodeStatus(ULONG* status, ULONG* problem, DEVINST device, ULONG) {
    *status = answers[device].status;
    *problem = 0;
    return CR_SUCCESS;
}

BOOL WINAPI GetDeviceProperty(HDEVINFO, SP_DEVINFO_DATA* device, const DEVPROPKEY* key,
                              DEVPROPTYPE* type, BYTE* buffer, DWORD, DWORD*, DWORD) {
    for (const simulation::DeviceProperty& property : answers[device->DevInst].properties) {
        if (property.key.pid == key->pid && property.key.fmtid.Data1 == key->fmtid.Data1) {
            *type = property.type;
            std::memcpy(buffer, property.bytes.data(), property.bytes.size());
            return TRUE;
        }
    }
    SetLastError(ERROR_NOT_FOUND);
    return FALSE;
}

BOOL WINAPI EnumDeviceInterfaces(HDEVINFO, SP_DEVINFO_DATA*, const GUID*, DWORD,
                                 SP_DEVICE_INTERFACE_DATA*) {
    SetLastError(ERROR_NO_MORE_ITEMS);
    return FALSE;
}

}  // namespace

void PutInstantDevices(simulation::ImportRedirection& redirection) {
    const std::pair<const char*, void*> calls[] = {
        {"SetupDiGetClassDevsW", reinterpret_cast<void*>(&GetClassDevs)},
        {"SetupDiDestroyDeviceInfoList", reinterpret_cast<void*>(&DestroyDeviceInfoList)},
        {"SetupDiEnumDeviceInfo", reinterpret_cast<void*>(&EnumDeviceInfo)},
        {"SetupDiGetDeviceInstanceIdW", reinterpret_cast<void*>(&GetDeviceInstanceId)},
        {"CM_Get_DevNode_Status", reinterpret_cast<void*>(&GetDevNodeStatus)},
        {"SetupDiGetDevicePropertyW", reinterpret_cast<void*>(&GetDeviceProperty)},
        {"SetupDiEnumDeviceInterfaces", reinterpret_cast<void*>(&EnumDeviceInterfaces)},
    };
    for (const auto& [name, replacement] : calls) {
        Put(redirection, name, replacement);
    }
}

void SetInstantDevices(std::vector<simulation::Device> devices) { answers = std::move(devices); }

}  // namespace benchmarks
