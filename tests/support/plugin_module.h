// The built plug-in, loaded as a host loads it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>

#include "platform/plugins_manager.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "util/scoped_handle.h"

namespace test_support {

/// The plug-in manager beside the test program, loaded while this lives.
class PluginsManager {
public:
    /// Throws std::runtime_error when it is not there.
    PluginsManager();

    std::size_t Count() const;
    /// Null beyond the last.
    const PluginRegistrationInfo* At(std::size_t index) const;
    void SetObserver(ZedPluginsManagerObserver observer, void* context) const;
    /// Gives the reference away early, to see whether anybody else holds one.
    void Release() { library.Reset(); }

private:
    ScopedModule library;
};

/// TallyportPlugin.dll beside the test program, loaded and registered with the manager.
class PluginModule {
public:
    /// Throws std::runtime_error when it does not load.
    PluginModule();

    HMODULE Handle() const { return library.Get(); }
    /// A new plug-in object, made by the registered factory; let go of it before the module.
    std::shared_ptr<ZedPlugin> Create(const PluginsManager& manager) const;
    void Unload() { library.Reset(); }

private:
    ScopedModule library;
};

/// Whether a module of this file name is mapped in the process.
bool IsLoaded(const wchar_t* fileName);

}  // namespace test_support
