#include "host/inventory.h"

#include "host/device_inventory/device_inventory.h"
#include "host/host_error.h"
#include "standins/common/text.h"

namespace host {
namespace {

std::string ObstacleText(unsigned obstacles) {
    std::string text;
    const auto name = [&](unsigned obstacle, const char* word) {
        if ((obstacles & obstacle) != 0) {
            text += (text.empty() ? "" : ", ") + std::string(word);
        }
    };
    name(DEVICE_INVENTORY_CONTAINER, "container");
    name(DEVICE_INVENTORY_CLASS, "class");
    name(DEVICE_INVENTORY_VENDOR_ID, "vendor id");
    return text;
}

InventoryRecord ToUtf8(const DeviceInventoryRecord& record) {
    InventoryRecord result;
    result.removable = record.isRemovable != 0 ? "yes" : "no";
    result.instanceId = standins::ToUtf8(record.instanceId);
    result.name = standins::ToUtf8(record.name);
    result.manufacturer = standins::ToUtf8(record.manufacturer);
    result.className = standins::ToUtf8(record.className);
    result.description = standins::ToUtf8(record.description);
    result.vendorId = standins::ToUtf8(record.vendorId);
    result.containerId = standins::ToUtf8(record.containerId);
    result.obstacles = ObstacleText(record.obstacles);
    return result;
}

std::vector<InventoryRecord>& ListIn(Inventory& inventory, DeviceInventoryList list) {
    switch (list) {
        case DEVICE_INVENTORY_HID:
            return inventory.hid;
        case DEVICE_INVENTORY_BLUETOOTH:
            return inventory.bluetooth;
        case DEVICE_INVENTORY_OTHER:
            return inventory.other;
        case DEVICE_INVENTORY_PRINTER:
            return inventory.printers;
        case DEVICE_INVENTORY_DISPLAY:
            return inventory.displays;
        case DEVICE_INVENTORY_UNREPORTED:
            break;
    }
    return inventory.unreported;
}

void Add(void* context, const DeviceInventoryRecord* record) {
    ListIn(*static_cast<Inventory*>(context), record->list).push_back(ToUtf8(*record));
}

}  // namespace

Inventory ReadInventory(const SuiteLibrary& library) {
    decltype(&DeviceInventory_Read) read = nullptr;
    library.Find(read, "DeviceInventory_Read");
    Inventory inventory;
    if (const char* const failure = read(&Add, &inventory)) {
        throw HostError(ExitCode::RunFailed,
                        "the plug-in's code ended with an exception, which would end the suite's "
                        "process: " +
                            std::string(failure) +
                            "; a monitor's EDID of less than ten bytes does that");
    }
    return inventory;
}

}  // namespace host
