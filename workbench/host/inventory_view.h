// The device inventory as tables.
#pragma once

#include "host/inventory.h"
#include "host/text_table.h"

namespace host {

/// A table for each list, under the name that the list has when it is sent, one for the devices
/// that are in no list, and how many there are of each. An empty text is shown as "-", the lines of
/// a text are joined by " / ".
TextLines DescribeInventory(const Inventory& inventory);

}  // namespace host
