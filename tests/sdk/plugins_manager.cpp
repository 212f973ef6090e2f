// A manager of one plug-in, which it drives itself.
#include "platform/plugins_manager.h"

#include <windows.h>

#include "record.h"

namespace {

PluginRegistrationInfo* registered = nullptr;

}  // namespace

extern "C" __declspec(dllexport) void RegisterPlugin(PluginRegistrationInfo* registration) {
    registered = registration;
    Record("other ZedPluginsManager", "registered " + registration->id);
}

extern "C" __declspec(dllexport) void UnRegisterPlugin(PluginRegistrationInfo* registration) {
    Record("other ZedPluginsManager", "withdrawn " + registration->id);
    registered = nullptr;
}

/// Runs the registered plug-in for so long. Returns 1 when all its operations succeeded.
extern "C" __declspec(dllexport) int RunPlugin(DWORD milliseconds) {
    if (registered == nullptr) {
        return 0;
    }
    const std::shared_ptr<ZedPlugin> plugin = registered->factory();
    if (!plugin->Initialize() || !plugin->Start()) {
        return 0;
    }
    Sleep(milliseconds);
    return plugin->Stop() && plugin->Uninitialize() ? 1 : 0;
}
