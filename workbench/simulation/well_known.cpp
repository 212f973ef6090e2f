#include "simulation/well_known.h"

namespace simulation {

const std::vector<NamedPropertyKey>& NamedPropertyKeys() {
    static const std::vector<NamedPropertyKey> keys{
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
    return keys;
}

const std::vector<NamedInterfaceClass>& NamedInterfaceClasses() {
    static const std::vector<NamedInterfaceClass> classes{
        {"hid", kHidInterface},
        {"usb", kUsbDeviceInterface},
        {"monitor", kMonitorInterface},
        {"disk", kDiskInterface},
    };
    return classes;
}

}  // namespace simulation
