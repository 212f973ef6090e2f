// Typed properties of a device node, as the configuration manager stores them.
#pragma once

#include <windows.h>
#include <devpropdef.h>

#include <string>
#include <string_view>
#include <vector>

namespace simulation {

/// A property: key, DEVPROP_TYPE_... and the bytes that a caller's buffer receives.
struct DeviceProperty {
    DEVPROPKEY key{};
    DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
    std::vector<BYTE> bytes;

    /// With its terminator.
    static DeviceProperty String(const DEVPROPKEY& key, std::wstring_view text);
    /// Each text with its terminator, then the list's own.
    static DeviceProperty StringList(const DEVPROPKEY& key, const std::vector<std::wstring>& texts);
    static DeviceProperty Guid(const DEVPROPKEY& key, const GUID& guid);
    static DeviceProperty UInt32(const DEVPROPKEY& key, UINT32 number);
    static DeviceProperty Raw(const DEVPROPKEY& key, DEVPROPTYPE type, std::vector<BYTE> bytes);
};

/// Null when none has this key.
const DeviceProperty* FindProperty(const std::vector<DeviceProperty>& properties,
                                   const DEVPROPKEY& key);

/// "{A45C254E-DF1C-4EFD-8020-67D146A850E0} 9"
std::string KeyText(const DEVPROPKEY& key);

}  // namespace simulation
