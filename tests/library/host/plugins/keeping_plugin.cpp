// A plug-in that keeps what the system hands out.
#include <windows.h>
// windows.h has to come first.
#include <setupapi.h>

#include <memory>

#include "library/host/plugins/registered_plugin.h"

namespace {

class KeepingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return true; }
    bool Uninitialize() override { return true; }
    bool Start() override {
        return SetupDiGetClassDevsW(/*ClassGuid=*/nullptr, /*Enumerator=*/nullptr,
                                    /*hwndParent=*/nullptr,
                                    DIGCF_PRESENT | DIGCF_ALLCLASSES) != INVALID_HANDLE_VALUE;
    }
    bool Stop() override { return true; }
};

std::shared_ptr<ZedPlugin> Create() { return std::make_shared<KeepingPlugin>(); }

}  // namespace

PluginRegistrationInfo registration{"keeping", &Create, {}, {}};
