// A manager from which "RegisterPlugin" is missing, so that no plug-in can announce itself to it.
#include "platform/plugins_manager.h"

extern "C" __declspec(dllexport) void UnRegisterPlugin(PluginRegistrationInfo* /*registration*/) {}
