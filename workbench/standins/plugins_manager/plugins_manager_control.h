// What a host or a test asks of ZedPluginsManager.dll. The plug-in never sees it. Every function
// may be called from any thread.
#pragma once

#include <cstddef>

#include "platform/plugins_manager.h"

#if defined(ZED_PLUGINS_MANAGER_EXPORTS)
#define ZED_PLUGINS_MANAGER_API __declspec(dllexport)
#else
#define ZED_PLUGINS_MANAGER_API __declspec(dllimport)
#endif

extern "C" {

/// Announces a plug-in. The record is kept by its address, in the order of the calls. Null, and a
/// record that is registered already, are refused with a warning on standard error.
ZED_PLUGINS_MANAGER_API void RegisterPlugin(PluginRegistrationInfo* registration);

/// Withdraws a plug-in. A record that is not registered is answered by a warning on standard error.
ZED_PLUGINS_MANAGER_API void UnRegisterPlugin(PluginRegistrationInfo* registration);

/// Learns of each call of the two functions above before it takes effect: "RegisterPlugin" or
/// "UnRegisterPlugin", with the address that was passed. Called on the calling thread, usually
/// under the loader's lock. It must not call ZedPluginsManager.
typedef void (*ZedPluginsManagerObserver)(void* context, const char* operation,
                                          const PluginRegistrationInfo* registration);

/// How many plug-ins are registered.
ZED_PLUGINS_MANAGER_API size_t ZedPluginsManager_Count(void);

/// The registration at a position, oldest first; null beyond the last. It belongs to the plug-in
/// and is valid until that is unloaded.
ZED_PLUGINS_MANAGER_API const PluginRegistrationInfo* ZedPluginsManager_At(size_t index);

/// Null removes it. After the return the previous one is not called any more.
ZED_PLUGINS_MANAGER_API void ZedPluginsManager_SetObserver(ZedPluginsManagerObserver observer,
                                                           void* context);

}  // extern "C"
