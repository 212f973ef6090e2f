// The life of the plug-in inside the host, from load to unload.
#pragma once

#include <memory>
#include <string>

#include "host/machine_time.h"
#include "host/run/suite.h"
#include "host/run/surroundings.h"
#include "host/views/screen.h"

namespace host {

/// Drives one plug-in through the steps of the suite's host and shows each of them. One thread.
class PluginSession {
public:
    /// Loads the library, finds what it registered and puts it into the surroundings. Throws
    /// RunFailed, with the reason, when that fails. The references must outlive the session.
    PluginSession(const Suite& theSuite, std::wstring thePath, Surroundings& theSurroundings,
                  Screen& theScreen);
    /// Takes down what still is up; failures are lost.
    ~PluginSession();
    PluginSession(const PluginSession&) = delete;
    PluginSession& operator=(const PluginSession&) = delete;

    /// Creates the plug-in through its factory, initialises and starts it. `clock` starts with it.
    /// Throws RunFailed when a step fails.
    void Start(RunClock& clock);

    /// Stops, uninitialises and releases the plug-in, as far as it came. Throws RunFailed after the
    /// last step when one of them failed.
    void Stop();

    /// Takes the library out of the surroundings, unloads it and waits until it is gone.
    void Unload();

private:
    void FindRegistration(std::size_t registeredBefore);

    const Suite& suite;
    const std::wstring path;
    Surroundings& surroundings;
    Screen& screen;
    ScopedModule module;
    const PluginRegistrationInfo* registration = nullptr;
    std::shared_ptr<ZedPlugin> plugin;
    bool initialized = false;
    bool started = false;
};

}  // namespace host
