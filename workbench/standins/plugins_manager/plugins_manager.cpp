#include <windows.h>

#include <algorithm>
#include <vector>

#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"
#include "standins/common/text_output.h"
#include "standins/plugins_manager/plugins_manager_control.h"

namespace {

using standins::ExclusiveLock;
using Registrations = std::vector<const PluginRegistrationInfo*>;

struct State {
    SRWLOCK lock = SRWLOCK_INIT;
    Registrations registrations;
    standins::CallbackSlot<ZedPluginsManagerObserver> observer;
};

// Never destroyed: a plug-in does not link this library, so that at process exit the library may be
// detached before a plug-in that still withdraws its registration.
State& state = *new State;

void Warn(std::wstring_view text) {
    standins::WriteStandardLine(STD_ERROR_HANDLE, L"ZedPluginsManager: " + std::wstring(text));
}

Registrations::iterator Find(const PluginRegistrationInfo* registration) {
    return std::find(state.registrations.begin(), state.registrations.end(), registration);
}

}  // namespace

void RegisterPlugin(PluginRegistrationInfo* registration) {
    state.observer.Call("RegisterPlugin", static_cast<const PluginRegistrationInfo*>(registration));
    const ExclusiveLock exclusive(state.lock);
    if (registration == nullptr) {
        Warn(L"RegisterPlugin got a null pointer instead of a registration record; ignored");
    } else if (Find(registration) != state.registrations.end()) {
        Warn(L"RegisterPlugin got a record that is registered already; ignored");
    } else {
        state.registrations.push_back(registration);
    }
}

void UnRegisterPlugin(PluginRegistrationInfo* registration) {
    state.observer.Call("UnRegisterPlugin",
                        static_cast<const PluginRegistrationInfo*>(registration));
    const ExclusiveLock exclusive(state.lock);
    if (!exclusive.IsHeld()) {
        return;
    }
    const auto found = Find(registration);
    if (found == state.registrations.end()) {
        Warn(L"UnRegisterPlugin got a record that is not registered; ignored");
    } else {
        state.registrations.erase(found);
    }
}

size_t ZedPluginsManager_Count() {
    const ExclusiveLock exclusive(state.lock);
    return state.registrations.size();
}

const PluginRegistrationInfo* ZedPluginsManager_At(size_t index) {
    const ExclusiveLock exclusive(state.lock);
    return index < state.registrations.size() ? state.registrations[index] : nullptr;
}

void ZedPluginsManager_SetObserver(ZedPluginsManagerObserver observer, void* context) {
    state.observer.Set(observer, context);
}
