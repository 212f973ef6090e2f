#include "support/plugin_module.h"

#include <stdexcept>
#include <string>

#include "support/child_process.h"

namespace test_support {
namespace {

HMODULE LoadBeside(const wchar_t* fileName) {
    const HMODULE module = LoadLibraryW((ProgramFolder() + L"\\" + fileName).c_str());
    if (module == nullptr) {
        throw std::runtime_error("the library does not load, error " +
                                 std::to_string(GetLastError()));
    }
    return module;
}

template <class Function>
Function* Find(HMODULE module, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

PluginsManager::PluginsManager() : library(LoadBeside(L"ZedPluginsManager.dll")) {}

std::size_t PluginsManager::Count() const {
    return Find<decltype(ZedPluginsManager_Count)>(library.Get(), "ZedPluginsManager_Count")();
}

const PluginRegistrationInfo* PluginsManager::At(std::size_t index) const {
    return Find<decltype(ZedPluginsManager_At)>(library.Get(), "ZedPluginsManager_At")(index);
}

void PluginsManager::SetObserver(ZedPluginsManagerObserver observer, void* context) const {
    Find<decltype(ZedPluginsManager_SetObserver)>(library.Get(), "ZedPluginsManager_SetObserver")(
        observer, context);
}

PluginModule::PluginModule() : library(LoadBeside(L"TallyportPlugin.dll")) {}

std::shared_ptr<ZedPlugin> PluginModule::Create(const PluginsManager& manager) const {
    return manager.At(0)->factory();
}

bool IsLoaded(const wchar_t* fileName) { return GetModuleHandleW(fileName) != nullptr; }

}  // namespace test_support
