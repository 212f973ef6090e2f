// The functions that a device set in force answers. Handles are numbers that nobody follows.
#include <windows.h>
// windows.h has to come first.
#include <cfgmgr32.h>
#include <setupapi.h>
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <string_view>

#include "fuzz/sources/device_set.h"
#include "simulation/import_redirection.h"
#include "simulation/well_known.h"

namespace fuzz_sources {
namespace {

const AnyDeviceSet* current = nullptr;
const AnyHid* openHid = nullptr;
int openHandles = 0;
decltype(::CloseHandle)* realCloseHandle = nullptr;
decltype(::CreateFileW)* realCreateFileW = nullptr;

const HANDLE kFile = reinterpret_cast<HANDLE>(std::uintptr_t{0x7770});
const HDEVINFO kSet = reinterpret_cast<HDEVINFO>(std::uintptr_t{0x7780});

/// The device is known by its place in the set, the interface by that in the device.
const AnyDevice& DeviceOf(DEVINST place) { return current->devices.at(place); }

BOOL Fails(DWORD error) {
    SetLastError(error);
    return FALSE;
}

HDEVINFO WINAPI FakeGetClassDevs(const GUID*, const wchar_t*, HWND, DWORD) {
    if (current->opensNot) {
        SetLastError(ERROR_INVALID_DATA);
        return INVALID_HANDLE_VALUE;
    }
    ++openHandles;
    return kSet;
}

BOOL WINAPI FakeDestroyDeviceInfoList(HDEVINFO) {
    --openHandles;
    return TRUE;
}

BOOL WINAPI FakeEnumDeviceInfo(HDEVINFO, DWORD index, SP_DEVINFO_DATA* device) {
    if (index >= current->devices.size()) {
        return Fails(ERROR_NO_MORE_ITEMS);
    }
    device->DevInst = index;
    return TRUE;
}

BOOL WINAPI FakeGetDeviceInstanceId(HDEVINFO, SP_DEVINFO_DATA* device, wchar_t* buffer, DWORD size,
                                    DWORD*) {
    const AnyDevice& answer = DeviceOf(device->DevInst);
    if (answer.idFails) {
        return Fails(ERROR_INSUFFICIENT_BUFFER);
    }
    answer.id.copy(buffer, size);
    return TRUE;
}

BOOL WINAPI FakeGetDeviceProperty(HDEVINFO, SP_DEVINFO_DATA* device, const DEVPROPKEY* key,
                                  DEVPROPTYPE* type, BYTE* buffer, DWORD size, DWORD*, DWORD) {
    const AnyDevice& answer = DeviceOf(device->DevInst);
    const auto is = [key](const DEVPROPKEY& other) {
        return key->pid == other.pid && IsEqualGUID(key->fmtid, other.fmtid);
    };
    std::wstring_view text;
    if (is(simulation::kFriendlyNameKey)) {
        text = answer.friendlyName;
    } else if (is(simulation::kManufacturerKey)) {
        text = answer.manufacturer;
    }
    if (text.empty()) {
        return Fails(ERROR_NOT_FOUND);
    }
    *type = DEVPROP_TYPE_STRING;
    std::memcpy(buffer, text.data(), std::min<std::size_t>(size, text.size() * sizeof(wchar_t)));
    return TRUE;
}

BOOL WINAPI FakeEnumDeviceInterfaces(HDEVINFO, SP_DEVINFO_DATA* device, const GUID* interfaceClass,
                                     DWORD index, SP_DEVICE_INTERFACE_DATA* data) {
    const std::vector<AnyHid>& interfaces = DeviceOf(device->DevInst).hidInterfaces;
    if (index >= interfaces.size()) {
        return Fails(ERROR_NO_MORE_ITEMS);
    }
    data->InterfaceClassGuid = *interfaceClass;
    data->Reserved = reinterpret_cast<ULONG_PTR>(&interfaces[index]);
    return TRUE;
}

/// The path fills the block to its end, but for the terminator.
BOOL WINAPI FakeGetDeviceInterfaceDetail(HDEVINFO, SP_DEVICE_INTERFACE_DATA* data,
                                         SP_DEVICE_INTERFACE_DETAIL_DATA_W* detail, DWORD size,
                                         DWORD* required, SP_DEVINFO_DATA*) {
    openHid = reinterpret_cast<const AnyHid*>(data->Reserved);
    if (detail == nullptr) {
        *required = static_cast<DWORD>(openHid->requiredSize);
        return Fails(openHid->detailFails ? ERROR_NO_SUCH_DEVINST : ERROR_INSUFFICIENT_BUFFER);
    }
    if (size < sizeof(*detail)) {
        return Fails(ERROR_INVALID_USER_BUFFER);
    }
    const std::size_t units =
        (size - offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath)) / sizeof(wchar_t) - 1;
    std::fill_n(detail->DevicePath, units, L'p');
    return TRUE;
}

ULONG WINAPI FakeGetDevNodeStatus(ULONG* status, ULONG* problem, DEVINST device, ULONG) {
    const AnyDevice& answer = DeviceOf(device);
    *status = answer.status;
    *problem = 0;
    return answer.statusFails ? CR_NO_SUCH_DEVNODE : CR_SUCCESS;
}

HANDLE WINAPI FakeCreateFile(const wchar_t* path, DWORD access, DWORD share,
                             SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                             HANDLE model) {
    if (current == nullptr) {
        return realCreateFileW(path, access, share, security, disposition, flags, model);
    }
    if (openHid->openFails) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    ++openHandles;
    return kFile;
}

BOOL WINAPI FakeCloseHandle(HANDLE handle) {
    if (handle != kFile) {
        return realCloseHandle(handle);
    }
    --openHandles;
    return TRUE;
}

BOOLEAN Write(const std::optional<std::wstring>& text, void* buffer, ULONG size) {
    if (text) {
        std::memcpy(buffer, text->data(),
                    std::min<std::size_t>(size, text->size() * sizeof(wchar_t)));
    }
    return text.has_value();
}

BOOLEAN WINAPI FakeGetProductString(HANDLE, void* buffer, ULONG size) {
    return Write(openHid->product, buffer, size);
}

BOOLEAN WINAPI FakeGetManufacturerString(HANDLE, void* buffer, ULONG size) {
    return Write(openHid->manufacturer, buffer, size);
}

void InstallFakes() {
    static simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    const auto redirect = [](const char* name, auto* fake) {
        imports.Redirect(name, reinterpret_cast<void*>(fake));
    };
    realCloseHandle = imports.Redirect<decltype(::CloseHandle)>("CloseHandle", FakeCloseHandle);
    realCreateFileW = imports.Redirect<decltype(::CreateFileW)>("CreateFileW", FakeCreateFile);
    redirect("SetupDiGetClassDevsW", FakeGetClassDevs);
    redirect("SetupDiDestroyDeviceInfoList", FakeDestroyDeviceInfoList);
    redirect("SetupDiEnumDeviceInfo", FakeEnumDeviceInfo);
    redirect("SetupDiGetDeviceInstanceIdW", FakeGetDeviceInstanceId);
    redirect("SetupDiGetDevicePropertyW", FakeGetDeviceProperty);
    redirect("SetupDiEnumDeviceInterfaces", FakeEnumDeviceInterfaces);
    redirect("SetupDiGetDeviceInterfaceDetailW", FakeGetDeviceInterfaceDetail);
    redirect("CM_Get_DevNode_Status", FakeGetDevNodeStatus);
    redirect("HidD_GetProductString", FakeGetProductString);
    redirect("HidD_GetManufacturerString", FakeGetManufacturerString);
}

}  // namespace

DeviceSetInForce::DeviceSetInForce(const AnyDeviceSet& set) {
    static std::once_flag installed;
    std::call_once(installed, InstallFakes);
    current = &set;
    openHandles = 0;
}

DeviceSetInForce::~DeviceSetInForce() { current = nullptr; }

int DeviceSetInForce::OpenHandles() const { return openHandles; }

}  // namespace fuzz_sources
