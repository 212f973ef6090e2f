// The device inventory as tables.
#pragma once

#include <map>
#include <vector>

#include "common/text_table.h"
#include "device_inventory/device_inventory.h"

namespace host {

struct InventoryRecord {
    DeviceReporter::DeviceInfo device;
    unsigned obstacles = 0;  ///< What keeps an unreported device out of the lists.
};

/// The plug-in's records by their list.
using Inventory = std::map<device_inventory::List, std::vector<InventoryRecord>>;

/// A table for each list, under the name that the list has when it is sent, one for the devices
/// that are in no list, and how many there are of each. An empty text is shown as "-", the lines of
/// a text are joined by " / ".
workbench::TextLines DescribeInventory(const Inventory& inventory);

}  // namespace host
