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
    /// called once per process: a second call while the timer loop runs ends the process.
    bool Start() override;

    /// Ends what Start began and waits for the timer loop. Harmless without Start.
    bool Stop() override;
};
