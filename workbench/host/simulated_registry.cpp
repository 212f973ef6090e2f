#include "host/simulated_registry.h"

#include <cwchar>

namespace host {

SimulatedRegistry::SimulatedRegistry(const Suite& theSuite) : suite(theSuite) {
    suite.setRegistryInterceptor(&SimulatedRegistry::Answer, this);
}

SimulatedRegistry::~SimulatedRegistry() { suite.setRegistryInterceptor(nullptr, nullptr); }

bool SimulatedRegistry::NameOrder::operator()(const std::wstring& left,
                                              const std::wstring& right) const {
    return _wcsicmp(left.c_str(), right.c_str()) < 0;
}

std::optional<std::int64_t> SimulatedRegistry::Get(HKEY root, const std::wstring& subKey,
                                                   const std::wstring& valueName) const {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto keys = roots.find(root);
    if (keys == roots.end()) {
        return std::nullopt;
    }
    const auto key = keys->second.find(subKey);
    if (key == keys->second.end()) {
        return std::nullopt;
    }
    const auto value = key->second.find(valueName);
    return value == key->second.end() ? std::nullopt : std::optional(value->second);
}

void SimulatedRegistry::Set(HKEY root, const std::wstring& subKey, const std::wstring& valueName,
                            std::optional<std::int64_t> number) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (number) {
        roots[root][subKey][valueName] = *number;
        return;
    }
    Keys& keys = roots[root];
    if (const auto key = keys.find(subKey); key != keys.end()) {
        key->second.erase(valueName);
    }
}

int SimulatedRegistry::Answer(void* context, int operation, HKEY root, const wchar_t* subKey,
                              const wchar_t* valueName, unsigned int /*accessMask*/,
                              long long* value, unsigned long* /*error*/) {
    auto& registry = *static_cast<SimulatedRegistry*>(context);
    if (operation == FILE_KIT_SET_INT32 || operation == FILE_KIT_SET_INT64) {
        registry.Set(root, subKey, valueName, *value);
        return FILE_KIT_SUCCEED;
    }
    return registry.Read(root, subKey, valueName, *value);
}

int SimulatedRegistry::Read(HKEY root, const wchar_t* subKey, const wchar_t* valueName,
                            long long& value) const {
    // The question may be for the key alone.
    if (valueName == nullptr) {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto keys = roots.find(root);
        return keys != roots.end() && keys->second.count(subKey) != 0 ? FILE_KIT_SUCCEED
                                                                      : FILE_KIT_FAIL;
    }
    const std::optional<std::int64_t> number = Get(root, subKey, valueName);
    if (!number) {
        return FILE_KIT_FAIL;
    }
    value = *number;
    return FILE_KIT_SUCCEED;
}

}  // namespace host
