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
                            long long& value) {
    const std::lock_guard<std::mutex> lock(mutex);
    const Keys& keys = roots[root];
    const auto key = keys.find(subKey);
    if (key == keys.end()) {
        return FILE_KIT_FAIL;
    }
    // The question may be for the key alone.
    if (valueName == nullptr) {
        return FILE_KIT_SUCCEED;
    }
    const auto found = key->second.find(valueName);
    if (found == key->second.end()) {
        return FILE_KIT_FAIL;
    }
    value = found->second;
    return FILE_KIT_SUCCEED;
}

}  // namespace host
