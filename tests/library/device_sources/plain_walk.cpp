#include "library/device_sources/plain_walk.h"

// Not every SDK's header declares C linkage by itself.
#include <cfgmgr32.h>
#include <setupapi.h>
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <cstring>
#include <regex>
#include <sstream>

#include "simulation/well_known.h"

namespace plain_walk {
namespace {

constexpr wchar_t kEnumKey[] = L"SYSTEM\\CurrentControlSet\\Enum";
constexpr wchar_t kClassesKey[] = L"SYSTEM\\CurrentControlSet\\Control\\DeviceClasses\\";

std::wstring Below(std::wstring key, const std::wstring& name) {
    key += L'\\';
    key += name;
    return key;
}

std::vector<std::wstring> SubKeys(const std::wstring& path) {
    std::vector<std::wstring> names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return names;
    }
    wchar_t name[512];
    for (DWORD index = 0;; ++index) {
        DWORD length = 512;
        if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        names.emplace_back(name, length);
    }
    RegCloseKey(key);
    return names;
}

std::wstring UpperCased(std::wstring id) {
    const std::wstring lower = L"abcdefghijklmnopqrstuvwxyz";
    const std::wstring upper = L"ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (wchar_t& unit : id) {
        const std::size_t place = lower.find(unit);
        unit = place == std::wstring::npos ? unit : upper[place];
    }
    return id;
}

std::wstring GuidText(const std::vector<BYTE>& bytes) {
    static const wchar_t* const digits = L"0123456789ABCDEF";
    // The first three fields are stored with their lowest byte first.
    constexpr int kOrder[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
    std::wstring text = L"{";
    for (int place : kOrder) {
        if (place < 0) {
            text += L'-';
        } else {
            const BYTE byte = bytes.at(static_cast<std::size_t>(place));
            text += digits[byte / 16];
            text += digits[byte % 16];
        }
    }
    return text + L"}";
}

/// Lines without those that are part of what stands before them.
std::wstring Lines(const std::vector<std::wstring>& texts) {
    std::wstring all;
    for (const std::wstring& text : texts) {
        if (std::search(all.begin(), all.end(), text.begin(), text.end()) == all.end()) {
            all += (all.empty() ? L"" : L"\n") + text;
        }
    }
    return all;
}

std::wstring Text(DEVPROPTYPE type, const std::vector<BYTE>& bytes) {
    const std::wstring units(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / 2);
    if (type == DEVPROP_TYPE_STRING) {
        return units.substr(0, units.find(L'\0'));
    }
    if (type == DEVPROP_TYPE_GUID) {
        return GuidText(bytes);
    }
    if (type == DEVPROP_TYPE_UINT32) {
        unsigned number = 0;
        std::memcpy(&number, bytes.data(), sizeof(number));
        std::wostringstream text;
        text << number;
        return text.str();
    }
    if (type != DEVPROP_TYPE_STRING_LIST) {
        return {};
    }
    std::vector<std::wstring> texts;
    std::wistringstream list(units);
    for (std::wstring text; std::getline(list, text, L'\0') && !text.empty();) {
        texts.push_back(text);
    }
    return Lines(texts);
}

std::wstring VendorId(const std::wstring& instanceId) {
    for (const wchar_t* pattern :
         {L"(DISPLAY\\\\.{7}).", L"(VID&.{17}).", L"(VID_.{13}).", L"(VEN_.{13})."}) {
        std::wsmatch match;
        if (std::regex_search(instanceId, match, std::wregex(pattern))) {
            return match[1];
        }
    }
    return {};
}

}  // namespace

std::vector<std::wstring> InstanceIds() {
    std::vector<std::wstring> ids;
    for (const std::wstring& enumerator : SubKeys(kEnumKey)) {
        for (const std::wstring& device : SubKeys(Below(kEnumKey, enumerator))) {
            const std::wstring model = Below(enumerator, device);
            for (const std::wstring& instance : SubKeys(Below(kEnumKey, model))) {
                ids.push_back(UpperCased(Below(model, instance)));
            }
        }
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<Interface> Interfaces(const GUID& interfaceClass) {
    std::vector<BYTE> bytes(sizeof(interfaceClass));
    std::memcpy(bytes.data(), &interfaceClass, sizeof(interfaceClass));
    const std::wstring classKey = kClassesKey + GuidText(bytes);
    std::vector<Interface> interfaces;
    for (const std::wstring& name : SubKeys(classKey)) {
        wchar_t deviceId[512];
        DWORD size = sizeof(deviceId);
        if (RegGetValueW(HKEY_LOCAL_MACHINE, Below(classKey, name).c_str(), L"DeviceInstance",
                         RRF_RT_REG_SZ, nullptr, deviceId, &size) == ERROR_SUCCESS) {
            // "##?#" stands for the "\\?\" of the path.
            interfaces.push_back({UpperCased(deviceId), L"\\\\?\\" + name.substr(4)});
        }
    }
    return interfaces;
}

DeviceReporter::DeviceInfo Describe(const std::wstring& instanceId) {
    const HDEVINFO set = SetupDiCreateDeviceInfoList(nullptr, nullptr);
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    SetupDiOpenDeviceInfoW(set, instanceId.c_str(), nullptr, /*OpenFlags=*/0, &device);
    const auto read = [&](const DEVPROPKEY& key) -> std::wstring {
        DEVPROPTYPE type = 0;
        DWORD size = 0;
        SetupDiGetDevicePropertyW(set, &device, &key, &type, nullptr, 0, &size, 0);
        std::vector<BYTE> bytes(size + 2);
        // A property of more than 4096 bytes is taken for one that cannot be read.
        if (size > 4096 ||
            !SetupDiGetDevicePropertyW(set, &device, &key, &type, bytes.data(), size, &size, 0)) {
            return {};
        }
        return Text(type, bytes);
    };
    DeviceReporter::DeviceInfo record;
    record.instanceId = instanceId;
    record.parent = read(simulation::kParentKey);
    record.className = read(simulation::kClassKey);
    record.manufacturer = read(simulation::kManufacturerKey);
    record.description = read(simulation::kDeviceDescKey);
    record.name = Lines({read(simulation::kFriendlyNameKey), read(simulation::kNameKey)});
    record.containerId = read(simulation::kContainerIdKey);
    record.vendorId = VendorId(instanceId);
    ULONG status = 0;
    ULONG problem = 0;
    DEVINST node = 0;
    if (CM_Locate_DevNodeW(&node, const_cast<wchar_t*>(instanceId.c_str()), 0) == CR_SUCCESS &&
        CM_Get_DevNode_Status(&status, &problem, node, 0) == CR_SUCCESS) {
        record.isRemovable = (status & DN_REMOVABLE) != 0;
    }
    SetupDiDestroyDeviceInfoList(set);
    return record;
}

DWORD AskHidDevice(const std::wstring& path, DeviceReporter::DeviceInfo& record) {
    const HANDLE file = CreateFileW(path.c_str(), /*dwDesiredAccess=*/0,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return GetLastError();
    }
    wchar_t product[127] = {};
    wchar_t manufacturer[127] = {};
    if (HidD_GetProductString(file, product, sizeof(product))) {
        record.name = product;
    }
    if (HidD_GetManufacturerString(file, manufacturer, sizeof(manufacturer))) {
        record.manufacturer = manufacturer;
    }
    CloseHandle(file);
    return ERROR_SUCCESS;
}

}  // namespace plain_walk
