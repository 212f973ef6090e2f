// A plug-in with a thread that nothing ends.
#include <windows.h>

#include <memory>

#include "library/host/plugins/registered_plugin.h"

namespace {

DWORD WINAPI WaitForever(void* /*unused*/) {
    Sleep(INFINITE);
    return 0;
}

class StayingPlugin final : public ZedPlugin {
public:
    bool Initialize() override { return true; }
    bool Uninitialize() override { return true; }
    bool Start() override {
        HMODULE self = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<const wchar_t*>(&WaitForever), &self);
        const HANDLE thread = CreateThread(nullptr, 0, &WaitForever, nullptr, 0, nullptr);
        return thread != nullptr && CloseHandle(thread) != FALSE;
    }
    bool Stop() override { return true; }
};

std::shared_ptr<ZedPlugin> Create() { return std::make_shared<StayingPlugin>(); }

}  // namespace

PluginRegistrationInfo registration{"staying", &Create, {}, {}};
