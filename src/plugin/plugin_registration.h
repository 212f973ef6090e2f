// The plug-in's registration with the host's plug-in manager.
#pragma once

#include <memory>

#include "platform/plugins_manager.h"

/// The record that is registered at load and withdrawn at unload. The manager reads it through its
/// address, so it is destroyed only after the withdrawal, at an unload as at the end of the
/// process.
extern PluginRegistrationInfo pluginRegistration;

/// Makes a new plug-in object, which the caller owns. Callable from any thread.
std::shared_ptr<ZedPlugin> CreatePlugin();
