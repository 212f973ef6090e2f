// A plug-in one step of which fails: the build defines FAILING_STEP as the name of the step, and
// FAILURE as how it does so: with a "result", an "exception" or a "number" that it throws.
#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string_view>

#include "library/host/plugins/registered_plugin.h"

namespace {

constexpr std::string_view kFailingStep = FAILING_STEP;
constexpr std::string_view kFailure = FAILURE;

/// Whether the step is one that succeeds.
bool Succeeds(std::string_view step) {
    if (step != kFailingStep) {
        return true;
    }
    if (kFailure == "exception") {
        throw std::runtime_error("no luck");
    }
    if (kFailure == "number") {
        throw 7;
    }
    return false;
}

class UnwillingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return Succeeds("Initialize"); }
    bool Uninitialize() override { return Succeeds("Uninitialize"); }
    bool Start() override { return Succeeds("Start"); }
    bool Stop() override { return Succeeds("Stop"); }
};

std::shared_ptr<ZedPlugin> Create() {
    return Succeeds("factory") ? std::make_shared<UnwillingPlugin>() : nullptr;
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
