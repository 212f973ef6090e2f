// ZedPluginsManager.dll: the host's plug-in manager. It is never linked: the plug-in looks its
// functions up by name in the library that the host has loaded, or else loads it for the call.
#pragma once

#include <functional>
#include <memory>
#include <string>

/// What the host drives a plug-in through. The order of the operations is the order of the slots.
/// There is no virtual destructor: the host owns plug-ins through shared pointers only.
class ZedPlugin {
public:
    virtual bool Initialize() = 0;
    virtual bool Uninitialize() = 0;
    virtual bool Start() = 0;
    virtual bool Stop() = 0;

protected:
    ~ZedPlugin() = default;
};

/// What a plug-in hands to the manager. The manager reads it through the pointer for as long as
/// the plug-in is registered, so the order of the members is part of the interface.
struct PluginRegistrationInfo {
    std::string id;
    std::function<std::shared_ptr<ZedPlugin>()> factory;
    std::string reservedText;
    std::function<void()> reservedCallback;
};

/// Type of the manager's exports "RegisterPlugin" and "UnRegisterPlugin".
extern "C" using PluginRegistrationFunction = void(*)(PluginRegistrationInfo * registration);
