// A manager from which "UnRegisterPlugin" is missing, so that no plug-in can withdraw from it.
#include "platform/plugins_manager.h"

extern "C" __declspec(dllexport) void RegisterPlugin(PluginRegistrationInfo* /*registration*/) {}
