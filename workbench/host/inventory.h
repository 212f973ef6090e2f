// What the plug-in's device inventory would hold.
#pragma once

#include <string>
#include <vector>

#include "host/suite.h"

namespace host {

/// One device, printer or monitor; texts in UTF-8, names of several lines as the plug-in holds
/// them.
struct InventoryRecord {
    std::string removable;   ///< "yes" or "no".
    std::string instanceId;  ///< A printer's queue name; a monitor's device path.
    std::string name;
    std::string manufacturer;
    std::string className;
    std::string description;
    std::string vendorId;
    std::string containerId;  ///< A printer driver's hardware id.
    std::string obstacles;    ///< What keeps an unreported device out of the lists.
};

struct Inventory {
    std::vector<InventoryRecord> hid;
    std::vector<InventoryRecord> bluetooth;
    std::vector<InventoryRecord> other;
    std::vector<InventoryRecord> unreported;
    std::vector<InventoryRecord> printers;
    std::vector<InventoryRecord> displays;
};

/// Lets the plug-in's code, in DeviceInventory.dll, read devices, printers and displays. Throws
/// HostError when that code ends with an exception.
Inventory ReadInventory(const SuiteLibrary& library);

}  // namespace host
