// Names for the property keys and device-interface classes that device descriptions use.
#pragma once

#include <string_view>

#include "simulation/device_property.h"

namespace simulation {

inline constexpr GUID kDevicePropertySet{
    0xA45C254E, 0xDF1C, 0x4EFD, {0x80, 0x20, 0x67, 0xD1, 0x46, 0xA8, 0x50, 0xE0}};

inline constexpr DEVPROPKEY kDeviceDescKey{kDevicePropertySet, 2};
inline constexpr DEVPROPKEY kHardwareIdsKey{kDevicePropertySet, 3};
inline constexpr DEVPROPKEY kClassKey{kDevicePropertySet, 9};
inline constexpr DEVPROPKEY kClassGuidKey{kDevicePropertySet, 10};
inline constexpr DEVPROPKEY kManufacturerKey{kDevicePropertySet, 13};
inline constexpr DEVPROPKEY kFriendlyNameKey{kDevicePropertySet, 14};
inline constexpr DEVPROPKEY kParentKey{
    {0x4340A6C5, 0x93FA, 0x4706, {0x97, 0x2C, 0x7B, 0x64, 0x80, 0x08, 0xA5, 0xA7}}, 8};
inline constexpr DEVPROPKEY kNameKey{
    {0xB725F130, 0x47EF, 0x101A, {0xA5, 0xF1, 0x02, 0x60, 0x8C, 0x9E, 0xEB, 0xAC}}, 10};
inline constexpr DEVPROPKEY kContainerIdKey{
    {0x8C7ED206, 0x3F8A, 0x4827, {0xB3, 0xAB, 0xAE, 0x9E, 0x1F, 0xAE, 0xFC, 0x6C}}, 2};

/// A property key with its name in machine files and the type that the system gives it.
struct NamedPropertyKey {
    std::string_view name;
    DEVPROPKEY key;
    DEVPROPTYPE type;
};
inline constexpr NamedPropertyKey kNamedPropertyKeys[] = {
    {"Parent", kParentKey, DEVPROP_TYPE_STRING},
    {"Class", kClassKey, DEVPROP_TYPE_STRING},
    {"ClassGuid", kClassGuidKey, DEVPROP_TYPE_GUID},
    {"Manufacturer", kManufacturerKey, DEVPROP_TYPE_STRING},
    {"DeviceDesc", kDeviceDescKey, DEVPROP_TYPE_STRING},
    {"FriendlyName", kFriendlyNameKey, DEVPROP_TYPE_STRING},
    {"Name", kNameKey, DEVPROP_TYPE_STRING},
    {"ContainerId", kContainerIdKey, DEVPROP_TYPE_GUID},
    {"HardwareIds", kHardwareIdsKey, DEVPROP_TYPE_STRING_LIST},
};

inline constexpr GUID kHidInterface{
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};
inline constexpr GUID kUsbDeviceInterface{
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
inline constexpr GUID kMonitorInterface{
    0xE6F07B5F, 0xEE97, 0x4A90, {0xB0, 0x76, 0x33, 0xF5, 0x7B, 0xF4, 0xEA, 0xA7}};
inline constexpr GUID kDiskInterface{
    0x53F56307, 0xB6BF, 0x11D0, {0x94, 0xF2, 0x00, 0xA0, 0xC9, 0x1E, 0xFB, 0x8B}};

/// An interface class with its name in machine files.
struct NamedInterfaceClass {
    std::string_view name;
    GUID guid;
};
inline constexpr NamedInterfaceClass kNamedInterfaceClasses[] = {
    {"hid", kHidInterface},
    {"usb", kUsbDeviceInterface},
    {"monitor", kMonitorInterface},
    {"disk", kDiskInterface},
};

}  // namespace simulation
