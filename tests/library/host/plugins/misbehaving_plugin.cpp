// A plug-in one step of which goes wrong. The build defines STEP as the name of the step, and FAULT
// as what it does: "refuses", "throws", "throws a number", "keeps" what the system hands out, or
// "stays" in a thread that nothing ends. Its entry point is the step "load".
#include <windows.h>
#include <setupapi.h>

#include <memory>
#include <stdexcept>
#include <string_view>

#include "standins/plugins_manager/plugins_manager_control.h"

namespace {

constexpr std::string_view kStep = STEP;
constexpr std::string_view kFault = FAULT;

DWORD WINAPI WaitForever(void* /*unused*/) {
    Sleep(INFINITE);
    return 0;
}

void StayLoaded() {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&WaitForever), &self);
    CloseHandle(CreateThread(nullptr, 0, &WaitForever, nullptr, 0, nullptr));
}

/// Whether the step is one that succeeds.
bool Succeeds(std::string_view step) {
    if (step != kStep) {
        return true;
    }
    if (kFault == "throws") {
        throw std::runtime_error("no luck");
    }
    if (kFault == "throws a number") {
        throw 7;
    }
    if (kFault == "keeps") {
        return SetupDiGetClassDevsW(/*ClassGuid=*/nullptr, /*Enumerator=*/nullptr,
                                    /*hwndParent=*/nullptr,
                                    DIGCF_PRESENT | DIGCF_ALLCLASSES) != INVALID_HANDLE_VALUE;
    }
    if (kFault == "stays") {
        StayLoaded();
        return true;
    }
    return false;
}

class MisbehavingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return Succeeds("Initialize"); }
    bool Uninitialize() override { return Succeeds("Uninitialize"); }
    bool Start() override { return Succeeds("Start"); }
    bool Stop() override { return Succeeds("Stop"); }
};

std::shared_ptr<ZedPlugin> Create() {
    return Succeeds("factory") ? std::make_shared<MisbehavingPlugin>() : nullptr;
}

PluginRegistrationInfo registration{"misbehaving", &Create, {}, {}};

}  // namespace

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        if (!Succeeds("registration")) {
            registration.factory = nullptr;
        }
        RegisterPlugin(&registration);
        return Succeeds("load") ? TRUE : FALSE;
    }
    if (reason == DLL_PROCESS_DETACH) {
        UnRegisterPlugin(&registration);
    }
    return TRUE;
}
