#include "library/device_sources/registered_devices.h"

#include <windows.h>
#include <setupapi.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "simulation/call_text.h"

#if defined(__MINGW32__)
// Its header lacks it.
extern "C" WINSETUPAPI BOOL WINAPI SetupDiSetDevicePropertyW(HDEVINFO set, SP_DEVINFO_DATA* device,
                                                             const DEVPROPKEY* key,
                                                             DEVPROPTYPE type, const BYTE* bytes,
                                                             DWORD size, DWORD flags);
#endif

namespace real_devices {
namespace {

// A setup class of our own: no driver of the system feels addressed.
constexpr GUID kSetupClass{
    0x7A11'7E57, 0x5D1C, 0x4B5E, {0x9C, 0x3A, 0x21, 0x60, 0x7E, 0x57, 0xDE, 0x01}};

[[noreturn]] void ThrowError(const char* call, DWORD error) {
    throw std::runtime_error(std::string(call) + " failed, error " + std::to_string(error));
}

void Require(BOOL done, const char* call) {
    if (!done) {
        ThrowError(call, GetLastError());
    }
}

class DeviceSet {
public:
    DeviceSet() : set(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
        if (set == INVALID_HANDLE_VALUE) {
            ThrowError("SetupDiCreateDeviceInfoList", GetLastError());
        }
    }
    ~DeviceSet() { SetupDiDestroyDeviceInfoList(set); }
    DeviceSet(const DeviceSet&) = delete;
    DeviceSet& operator=(const DeviceSet&) = delete;

    HDEVINFO Get() const { return set; }

private:
    HDEVINFO set;
};

void RemoveOurDevices() {
    HDEVINFO const set = SetupDiGetClassDevsW(&kSetupClass, nullptr, nullptr, /*Flags=*/0);
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    for (DWORD index = 0; SetupDiEnumDeviceInfo(set, index, &device); ++index) {
        SetupDiRemoveDevice(set, &device);
    }
    SetupDiDestroyDeviceInfoList(set);
}

/// What a device's driver does once it has started the device. Until then the system does not list
/// the interface.
void EnableInterface(HDEVINFO set, SP_DEVICE_INTERFACE_DATA& offered) {
    std::vector<BYTE> block(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) + 1000);
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(block.data());
    detail->cbSize = sizeof(*detail);
    Require(SetupDiGetDeviceInterfaceDetailW(set, &offered, detail,
                                             static_cast<DWORD>(block.size()), nullptr, nullptr),
            "SetupDiGetDeviceInterfaceDetailW");
    // The path "\\?\hid#..." is the key "##?#hid#...".
    const std::wstring path = detail->DevicePath;
    const std::wstring key =
        L"SYSTEM\\CurrentControlSet\\Control\\DeviceClasses\\" +
        simulation::FromUtf8(simulation::GuidText(offered.InterfaceClassGuid)) + L"\\##?#" +
        path.substr(4) + L"\\#\\Control";
    const DWORD linked = 1;
    const LSTATUS status = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"Linked", REG_DWORD,
                                           &linked, sizeof(linked));
    if (status != ERROR_SUCCESS) {
        ThrowError("RegSetKeyValueW", static_cast<DWORD>(status));
    }
}

void Register(HDEVINFO set, const simulation::Device& description) {
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    Require(SetupDiCreateDeviceInfoW(set, description.instanceId.c_str(), &kSetupClass,
                                     /*DeviceDescription=*/nullptr, /*hwndParent=*/nullptr,
                                     /*CreationFlags=*/0, &device),
            "SetupDiCreateDeviceInfoW");
    Require(SetupDiRegisterDeviceInfo(set, &device, /*Flags=*/0, /*CompareProc=*/nullptr,
                                      /*CompareContext=*/nullptr, /*DupDeviceInfoData=*/nullptr),
            "SetupDiRegisterDeviceInfo");
    for (const simulation::DeviceProperty& property : description.properties) {
        Require(SetupDiSetDevicePropertyW(set, &device, &property.key, property.type,
                                          property.bytes.data(),
                                          static_cast<DWORD>(property.bytes.size()), /*flags=*/0),
                "SetupDiSetDevicePropertyW");
    }
    for (const simulation::DeviceInterface& offered : description.interfaces) {
        SP_DEVICE_INTERFACE_DATA created{};
        created.cbSize = sizeof(created);
        Require(SetupDiCreateDeviceInterfaceW(set, &device, &offered.interfaceClass,
                                              /*ReferenceString=*/nullptr, /*CreationFlags=*/0,
                                              &created),
                "SetupDiCreateDeviceInterfaceW");
        EnableInterface(set, created);
    }
}

}  // namespace

bool RunsInWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

RegisteredDevices::RegisteredDevices(const std::vector<simulation::Device>& devices) {
    RemoveOurDevices();
    try {
        const DeviceSet set;
        for (const simulation::Device& device : devices) {
            Register(set.Get(), device);
        }
    } catch (...) {
        RemoveOurDevices();
        throw;
    }
}

RegisteredDevices::~RegisteredDevices() { RemoveOurDevices(); }

}  // namespace real_devices
