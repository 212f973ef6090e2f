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
};

/// The message-only window of the plug-in's device monitor in this process, or null.
HWND FindMonitorWindow();

/// Tells the monitor about each interface of a device, as the system does; `event` is DBT_... Waits
/// until the monitor has dealt with it, `patience` for each interface. Not from the monitor's own
/// thread; one thread at a time.
Delivery Announce(UINT event, const Device& device, std::chrono::milliseconds patience);

/// Adds the device to the machine and announces it (DBT_DEVICEARRIVAL).
Delivery PlugDevice(World& world, const Device& device,
                    std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Takes the device out of the machine and announces that (DBT_DEVICEREMOVECOMPLETE).
Delivery UnplugDevice(World& world, const std::wstring& instanceId,
                      std::chrono::milliseconds patience = std::chrono::minutes(1));

}  // namespace simulation
