// A plug-in one step of which fails: the build defines FAILING_STEP as the name of the step.
#include <windows.h>

#include <memory>
#include <string_view>

#include "standins/plugins_manager/plugins_manager_control.h"

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
    PluginRegistrationInfo registration{"unwilling", &Create, {}, {}};
    if (kFailingStep == "registration") {
        registration.factory = nullptr;
    }
    return registration;
}

PluginRegistrationInfo registration = MakeRegistration();

}  // namespace

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        RegisterPlugin(&registration);
    } else if (reason == DLL_PROCESS_DETACH) {
        UnRegisterPlugin(&registration);
    }
    return TRUE;
}
