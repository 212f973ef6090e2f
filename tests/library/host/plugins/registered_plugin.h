// What registers a test plug-in with the manager while it is loaded.
#pragma once

#include "standins/plugins_manager/plugins_manager_control.h"

/// Each plug-in defines its own; registered_plugin.cpp has the entry point.
extern PluginRegistrationInfo registration;
