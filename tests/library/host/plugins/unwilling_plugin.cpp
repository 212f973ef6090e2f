// A plug-in one step of which fails: the build defines FAILING_STEP as the name of the step.
#include <windows.h>

#include <memory>
#include <string_view>

#include "library/host/plugins/registered_plugin.h"

namespace {

constexpr std::string_view kFailingStep = FAILING_STEP;

class UnwillingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return kFailingStep != "Initialize"; }
    bool Uninitialize() override { return kFailingStep != "Uninitialize"; }
    bool Start() override { return kFailingStep != "Start"; }
    bool Stop() override { return kFailingStep != "Stop"; }
};

std::shared_ptr<ZedPlugin> Create() {
    if (kFailingStep == "factory") {
        return nullptr;
    }
    return std::make_shared<UnwillingPlugin>();
}

PluginRegistrationInfo MakeRegistration() {
    PluginRegistrationInfo made{"unwilling", &Create, {}, {}};
    if (kFailingStep == "registration") {
        made.factory = nullptr;
    }
    return made;
}

}  // namespace

PluginRegistrationInfo registration = MakeRegistration();
