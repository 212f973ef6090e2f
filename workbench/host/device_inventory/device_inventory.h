// The plug-in's device inventory, read by the plug-in's own code without a plug-in that runs.
//
// DeviceInventory.dll is linked from the very objects that make the plug-in. A library of its own
// has an import table of its own, so that a simulated machine can stand behind it.
#pragma once

#ifdef DEVICE_INVENTORY_EXPORTS
#define DEVICE_INVENTORY_API __declspec(dllexport)
#else
#define DEVICE_INVENTORY_API __declspec(dllimport)
#endif

extern "C" {

/// Where a record goes when the plug-in sends its device list.
typedef enum DeviceInventoryList {
    DEVICE_INVENTORY_HID,
    DEVICE_INVENTORY_BLUETOOTH,
    DEVICE_INVENTORY_OTHER,
    DEVICE_INVENTORY_UNREPORTED,  ///< In the device map, but in no list.
    DEVICE_INVENTORY_PRINTER,
    DEVICE_INVENTORY_DISPLAY,
} DeviceInventoryList;

/// What keeps a device out of the lists; bits of DeviceInventoryRecord::obstacles.
enum {
    DEVICE_INVENTORY_VENDOR_ID = 1,
    DEVICE_INVENTORY_CLASS = 2,
    DEVICE_INVENTORY_CONTAINER = 4,
};

/// One record, its texts as the plug-in holds them: UTF-16, never null, valid during the call.
typedef struct DeviceInventoryRecord {
    DeviceInventoryList list;
    unsigned obstacles;  ///< 0 unless the list is DEVICE_INVENTORY_UNREPORTED.
    int isRemovable;
    const wchar_t* instanceId;
    const wchar_t* name;
    const wchar_t* manufacturer;
    const wchar_t* className;
    const wchar_t* description;
    const wchar_t* vendorId;
    const wchar_t* containerId;
} DeviceInventoryRecord;

/// Must not throw.
typedef void (*DeviceInventorySink)(void* context, const DeviceInventoryRecord* record);

/// Reads devices, printers and displays in the plug-in's own order, and only then gives the records
/// to `sink`: devices in map order, then printers, then displays. Returns null, or what the
/// exception said with which the plug-in's code ended, valid until the next call. One thread at a
/// time.
DEVICE_INVENTORY_API const char* DeviceInventory_Read(DeviceInventorySink sink, void* context);

}  // extern "C"
