#include "device_reporter/device_enumeration.h"

#include <cfgmgr32.h>
#include <hidclass.h>
#include <setupapi.h>

#include <cstddef>
#include <optional>
#include <string>

#include "device_reporter/device_properties.h"
#include "device_reporter/device_text.h"
#include "device_reporter/hid_info.h"
#include "device_reporter/scoped_device_handles.h"
#include "report/log_line.h"
#include "util/fixed_text.h"

namespace DeviceReporter {

namespace {

static_assert(sizeof(SP_DEVINFO_DATA) == 32);
static_assert(sizeof(SP_DEVICE_INTERFACE_DATA) == 32);

constexpr std::size_t kMaxDevices = 500;
constexpr DWORD kInstanceIdCapacity = 260;  ///< In characters.

/// How the two fills differ.
struct FillOptions {
    const GUID* interfaceClass;  ///< Null for all setup classes.
    DWORD flags;
    bool readHidInterfaces;
    const char* functionName;
};

/// True, with a log line, when the map holds as many devices as it may.
bool LogIfFull(const DeviceMap& devices, const char* functionName) {
    if (devices.size() < kMaxDevices) {
        return false;
    }
    WriteLogLine(LOG_LEVEL_NORMAL, functionName, "device map size exceeds limit: ", devices.size());
    return true;
}

/// Ids are compared without case. Only a to z change, whatever the locale.
void ToUpperAscii(std::wstring& text) {
    for (wchar_t& unit : text) {
        if (unit >= L'a' && unit <= L'z') {
            unit = static_cast<wchar_t>(unit - L'a' + L'A');
        }
    }
}

std::optional<std::wstring> ReadInstanceId(HDEVINFO set, SP_DEVINFO_DATA& device,
                                           const char* functionName) {
    wchar_t buffer[kInstanceIdCapacity] = {};
    if (!SetupDiGetDeviceInstanceIdW(set, &device, buffer, kInstanceIdCapacity,
                                     /*RequiredSize=*/nullptr)) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_NORMAL, functionName,
                     "fail to get device instance id, lastError = ", error);
        return std::nullopt;
    }
    std::wstring instanceId = TextOf(buffer);
    ToUpperAscii(instanceId);
    return instanceId;
}

bool IsRemovable(DEVINST device) {
    ULONG status = 0;
    ULONG problem = 0;
    return CM_Get_DevNode_Status(&status, &problem, device, /*ulFlags=*/0) == CR_SUCCESS &&
           (status & DN_REMOVABLE) != 0;
}

void ReadHidInterfaces(HDEVINFO set, SP_DEVINFO_DATA& device, DeviceInfo& record) {
    SP_DEVICE_INTERFACE_DATA interfaceData{};
    interfaceData.cbSize = sizeof(interfaceData);
    for (DWORD index = 0;
         SetupDiEnumDeviceInterfaces(set, &device, &GUID_DEVINTERFACE_HID, index, &interfaceData);
         ++index) {
        if (IsEqualGUID(interfaceData.InterfaceClassGuid, GUID_DEVINTERFACE_HID)) {
            // The result is dropped: without the device's own texts, those of its properties stay.
            UpdateHidDeviceInfo(set, interfaceData, record);
        }
    }
}

DeviceInfo ReadDevice(HDEVINFO set, SP_DEVINFO_DATA& device, const std::wstring& instanceId,
                      bool readHidInterfaces, PropertyBuffer& buffer) {
    DeviceInfo record;
    record.instanceId = instanceId;
    record.isRemovable = IsRemovable(device.DevInst);
    ReadDeviceProperties(set, device, buffer, record);
    record.vendorId = GetVendorId(instanceId);
    if (readHidInterfaces) {
        ReadHidInterfaces(set, device, record);
    }
    return record;
}

bool AddDevices(const FillOptions& options, DeviceMap& devices) {
    if (LogIfFull(devices, options.functionName)) {
        return false;
    }
    const ScopedDeviceInfoSet set(SetupDiGetClassDevsW(
        options.interfaceClass, /*Enumerator=*/nullptr, /*hwndParent=*/nullptr, options.flags));
    if (!set) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_NORMAL, options.functionName,
                     "fail to get class devs, lastError = ", error);
        return false;
    }
    // Owned by the fill and cleared before each property.
    PropertyBuffer buffer;
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    for (DWORD index = 0; SetupDiEnumDeviceInfo(set.Get(), index, &device); ++index) {
        const std::optional<std::wstring> instanceId =
            ReadInstanceId(set.Get(), device, options.functionName);
        // What is known already is never refreshed.
        if (!instanceId || devices.count(*instanceId) != 0) {
            continue;
        }
        devices.emplace(*instanceId, ReadDevice(set.Get(), device, *instanceId,
                                                options.readHidInterfaces, buffer));
        if (LogIfFull(devices, options.functionName)) {
            break;
        }
    }
    return true;
}

}  // namespace

bool AddAllDevicesToMap(DeviceMap& devices) {
    return AddDevices({/*interfaceClass=*/nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES,
                       /*readHidInterfaces=*/false, "DeviceReporter::AddAllDevicesToMap"},
                      devices);
}

bool AddDeviceInterfaceToMap(const GUID& interfaceClass, DeviceMap& devices) {
    // Whatever the class is, a device may have HID interfaces too.
    return AddDevices({&interfaceClass, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE,
                       /*readHidInterfaces=*/true, "DeviceReporter::AddDeviceInterfaceToMap"},
                      devices);
}

void FillDeviceMap(DeviceMap& devices) {
    // HID first: a device that is known already is not refreshed, and only this fill asks HID
    // devices for their own texts. Both results are dropped: a fill that failed has logged it.
    AddDeviceInterfaceToMap(GUID_DEVINTERFACE_HID, devices);
    AddAllDevicesToMap(devices);
}

}  // namespace DeviceReporter
