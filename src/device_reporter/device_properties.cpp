#include "device_reporter/device_properties.h"

#include <devpkey.h>

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <utility>

#include "device_reporter/device_text.h"
#include "util/fixed_text.h"

namespace DeviceReporter {

namespace {

enum class Filing { kReplace, kMerge };

struct PropertyField {
    const DEVPROPKEY& key;
    std::wstring DeviceInfo::*field;
    Filing filing;
};

// In the order in which they are read: the friendly name comes first in a merged name.
const PropertyField kPropertyFields[] = {
    {DEVPKEY_Device_Parent, &DeviceInfo::parent, Filing::kReplace},
    {DEVPKEY_Device_Class, &DeviceInfo::className, Filing::kReplace},
    {DEVPKEY_Device_Manufacturer, &DeviceInfo::manufacturer, Filing::kReplace},
    {DEVPKEY_Device_DeviceDesc, &DeviceInfo::description, Filing::kReplace},
    {DEVPKEY_Device_FriendlyName, &DeviceInfo::name, Filing::kMerge},
    {DEVPKEY_NAME, &DeviceInfo::name, Filing::kMerge},
    {DEVPKEY_Device_ContainerId, &DeviceInfo::containerId, Filing::kReplace},
};

template <typename Value>
Value ReadValue(const PropertyBuffer& buffer) {
    static_assert(sizeof(Value) <= sizeof(PropertyBuffer));
    Value value;
    std::memcpy(&value, buffer, sizeof(value));
    return value;
}

void SetDeviceProperty(DeviceInfo& record, const PropertyField& property,
                       const std::wstring& text) {
    std::wstring& field = record.*property.field;
    field = property.filing == Filing::kMerge ? AppendUnique(field, text) : text;
}

}  // namespace

void ReadDeviceProperties(HDEVINFO devices, SP_DEVINFO_DATA& device, PropertyBuffer& buffer,
                          DeviceInfo& record) {
    for (const PropertyField& property : kPropertyFields) {
        // A string without terminator then ends where the read ended, not in an older property.
        std::memset(buffer, 0, sizeof(buffer));
        DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
        if (SetupDiGetDevicePropertyW(devices, &device, &property.key, &type,
                                      reinterpret_cast<BYTE*>(buffer), sizeof(buffer),
                                      /*RequiredSize=*/nullptr, /*Flags=*/0)) {
            SetDeviceProperty(record, property, PropertyToString(type, buffer));
        }
    }
}

std::wstring PropertyToString(DEVPROPTYPE type, const PropertyBuffer& buffer) {
    switch (type) {
        case DEVPROP_TYPE_UINT32:
            return std::to_wstring(ReadValue<std::uint32_t>(buffer));
        case DEVPROP_TYPE_GUID:
            return GuidToString(ReadValue<GUID>(buffer));
        case DEVPROP_TYPE_STRING:
            return TextOf(buffer);
        case DEVPROP_TYPE_STRING_LIST:
            return JoinStringList(buffer);
        default:
            return {};
    }
}

std::wstring JoinStringList(const PropertyBuffer& buffer) {
    constexpr std::size_t kCapacity = sizeof(buffer) / sizeof(buffer[0]);
    std::wstring joined;
    std::size_t position = 0;
    while (position < kCapacity) {
        const wchar_t* const text = buffer + position;
        const std::size_t length = wcsnlen(text, kCapacity - position);
        if (length == 0) {
            break;
        }
        joined = AppendUnique(std::move(joined), std::wstring(text, length));
        position += length + 1;
    }
    return joined;
}

}  // namespace DeviceReporter
