#include "plugin/plugin_registration.h"

#include <cstddef>

#include "plugin/tallyport_plugin.h"

namespace {

constexpr char kPluginId[] = "6FB0F3BF-9BBC-4A0B-9B61-3AD94AEA2DE8";

}  // namespace

#if defined(_MSVC_STL_VERSION) && !defined(_DEBUG)
// The suite is built with Microsoft's compiler and library: this is the layout that it reads.
static_assert(sizeof(PluginRegistrationInfo) == 192);
static_assert(offsetof(PluginRegistrationInfo, id) == 0);
static_assert(offsetof(PluginRegistrationInfo, factory) == 32);
static_assert(offsetof(PluginRegistrationInfo, reservedText) == 96);
static_assert(offsetof(PluginRegistrationInfo, reservedCallback) == 128);
#endif

PluginRegistrationInfo pluginRegistration{kPluginId, &CreatePlugin, {}, {}};

std::shared_ptr<ZedPlugin> CreatePlugin() { return std::make_shared<TallyportPlugin>(); }
