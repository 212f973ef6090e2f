// The plug-in object that the host drives.
#pragma once

#include "platform/plugins_manager.h"

/// Wires the reporters to their timers and takes them down again.
///
/// The reporters are single instances of the process: two plug-in objects would share them. All
/// operations run on the host's thread and return true.
class TallyportPlugin final : public ZedPlugin {
public:
    /// Does nothing.
    bool Initialize() override;
    /// Does nothing.
    bool Uninitialize() override;

    /// Registers the reports, runs the cheap ones once and starts the timer loop. Meant to be
    /// called once per load: a second call while the timer loop runs ends the process, and after
    /// Stop periodic reports do not come back.
    bool Start() override;

    /// Ends the timer loop and the firmware events, and waits for both; asks the device monitor to
    /// end and does not wait. A monitor that has no window yet is not reached: it stays, and the
    /// library with it, until the process ends. Harmless without Start.
    bool Stop() override;
};
