// The plug-in's device inventory, read by the plug-in's own code without a plug-in that runs.
//
// DeviceInventory.dll is linked from the very objects that make the plug-in. A library of its own
// has an import table of its own, so that a simulated machine can stand behind it. It is built
// together with the host and gives it the plug-in's records as they are.
#pragma once

#include "device_reporter/device_info.h"

#ifdef DEVICE_INVENTORY_EXPORTS
#define DEVICE_INVENTORY_API __declspec(dllexport)
#else
#define DEVICE_INVENTORY_API __declspec(dllimport)
#endif

namespace device_inventory {

/// Where a record goes when the plug-in sends its device list.
enum class List { Hid, Bluetooth, Other, Printer, Display, Unreported };

/// What keeps a device out of the lists; bits.
enum Obstacle : unsigned { kVendorId = 1, kClass = 2, kContainer = 4 };

/// Gets one record. `obstacles` is 0 unless the list is Unreported. Must not throw.
using Sink = void (*)(void* context, List list, unsigned obstacles,
                      const DeviceReporter::DeviceInfo& record);

}  // namespace device_inventory

/// Reads devices, printers and displays in the plug-in's own order, and only then gives the records
/// to `sink`: devices in map order, then printers, then displays. Returns null, or what the
/// exception said with which the plug-in's code ended, valid until the next call. One thread at a
/// time.
extern "C" DEVICE_INVENTORY_API const char* DeviceInventory_Read(device_inventory::Sink sink,
                                                                 void* context);
