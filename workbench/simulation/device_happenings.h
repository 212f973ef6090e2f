// Devices that come and go while the plug-in runs.
#pragma once

#include <windows.h>

#include <chrono>
#include <string>

#include "simulation/simulated_machine.h"

namespace simulation {

/// What became of a device happening.
enum class Delivery {
    Delivered,  ///< The plug-in has dealt with every notification by now.
    NoWindow,   ///< Nobody listens: the plug-in's monitor has no window (any longer).
    TimedOut,   ///< The monitor did not answer in time.
    NoDevice,   ///< The machine has no such device.
};

/// The message-only window of the plug-in's device monitor in this process, or null.
HWND FindMonitorWindow();

/// Adds the device to the machine and then tells the monitor about each of its interfaces, as the
/// system does (DBT_DEVICEARRIVAL). Waits until the monitor has dealt with it, `patience` for each
/// interface. Not from the monitor's own thread.
Delivery PlugDevice(World& world, Device device,
                    std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Takes the device out of the machine and tells the monitor (DBT_DEVICEREMOVECOMPLETE).
Delivery UnplugDevice(World& world, const std::wstring& instanceId,
                      std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Sends one notification about a device interface; `event` is DBT_... One thread at a time.
Delivery SendDeviceChange(UINT event, const GUID& interfaceClass, const std::wstring& path,
                          std::chrono::milliseconds patience);

}  // namespace simulation
