// The library's entry point and its two module functions.
#include <windows.h>
#include <pathcch.h>

#include <string>

#include "platform/plugins_manager.h"
#include "plugin/plugin_registration.h"
#include "util/kept_at_process_end.h"
#include "util/scoped_handle.h"

namespace {

constexpr wchar_t kPluginsManagerName[] = L"ZedPluginsManager.dll";

/// The plug-in manager for the length of one call into it.
struct PluginsManager {
    HMODULE module = nullptr;
    /// Set only when the manager had to be loaded. The host keeps a reference of its own; the
    /// plug-in never holds one beyond the call.
    ScopedModule loaded;
};

/// Finds the manager among the loaded modules, or else loads it from the executable's folder.
/// `module` stays null on failure.
PluginsManager FindPluginsManager() {
    PluginsManager manager;
    manager.module = GetModuleHandleW(kPluginsManagerName);
    if (manager.module != nullptr) {
        return manager;
    }
    wchar_t folder[MAX_PATH] = {};
    if (GetModuleFileNameW(/*hModule=*/nullptr, folder, MAX_PATH) == 0) {
        return manager;
    }
    // S_FALSE, "nothing was removed", is a failure too: the path then is not that of a file.
    if (PathCchRemoveFileSpec(folder, MAX_PATH) != S_OK) {
        return manager;
    }
    manager.loaded.Reset(
        LoadLibraryW((std::wstring(folder) + L"\\" + kPluginsManagerName).c_str()));
    manager.module = manager.loaded.Get();
    return manager;
}

/// Calls the manager's export `name` with the registration record. False when there is no manager
/// or no such export.
bool CallPluginsManager(const char* name) {
    const PluginsManager manager = FindPluginsManager();
    if (manager.module == nullptr) {
        return false;
    }
    // Through void*: a direct cast between two function types draws a warning.
    const auto function = reinterpret_cast<PluginRegistrationFunction>(
        reinterpret_cast<void*>(GetProcAddress(manager.module, name)));
    if (function == nullptr) {
        return false;
    }
    function(&pluginRegistration);
    return true;
}

}  // namespace

extern "C" __declspec(dllexport) bool InitializePluginModule() { return true; }

extern "C" __declspec(dllexport) void UninitializePluginModule() {}

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID reserved) {
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            // Kept: hosts expect the registration during the load, under the loader's lock. So the
            // manager's function must start no thread that it waits for.
            return CallPluginsManager("RegisterPlugin") ? TRUE : FALSE;
        case DLL_PROCESS_DETACH:
            // Set when the process ends, null when the library is unloaded.
            if (reserved != nullptr) {
                processIsEnding = true;
            }
            CallPluginsManager("UnRegisterPlugin");
            return TRUE;
        default:
            return TRUE;
    }
}
