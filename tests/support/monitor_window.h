// The device monitor's message-only window in this process.
#pragma once

#include "simulation/device_happenings.h"

namespace test_support {

using simulation::FindMonitorWindow;

/// Waits until the window exists and its thread handles messages, so that a Stop reaches it. False
/// when that never comes about.
bool MonitorHandlesMessages();

}  // namespace test_support
