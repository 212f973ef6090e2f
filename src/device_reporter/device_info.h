// The record that every source of the device inventory produces.
#pragma once

#include <map>
#include <string>

namespace DeviceReporter {

/// One device. Texts that a source does not know stay empty.
struct DeviceInfo {
    bool isRemovable = false;  ///< The device node reports itself removable.
    /// Device instance id, upper-cased; a printer's queue name; a monitor's device path.
    std::wstring instanceId;
    std::wstring parent;  ///< Instance id of the parent device node.
    /// Friendly name and device name, one per line; a HID device's product string; a queue's or
    /// monitor's name.
    std::wstring name;
    std::wstring manufacturer;  ///< A monitor's is the maker's id in its EDID.
    std::wstring className;     ///< Setup class name, or "Printer" or "Monitor".
    std::wstring description;   ///< A printer's driver name; a monitor's mode text.
    /// Vendor and product piece of the instance id; a printer's data type and port.
    std::wstring vendorId;
    std::wstring containerId;  ///< Braced upper-case GUID; a printer driver's hardware id.
};

/// Devices by their upper-cased instance id. An entry is never replaced once inserted. Touched only
/// on the device monitor thread.
using DeviceMap = std::map<std::wstring, DeviceInfo>;

}  // namespace DeviceReporter
