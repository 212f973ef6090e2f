#include "simulation/memory_registry.h"

#include <cstdio>
#include <cstring>
#include <mutex>
#include <utility>

#include "simulation/call_text.h"
#include "standins/file_kit/file_kit_control.h"

namespace simulation {
namespace {

std::string RootName(HKEY root) {
    if (root == HKEY_LOCAL_MACHINE) {
        return "HKLM";
    }
    return root == HKEY_USERS ? "HKU" : "unexpected root";
}

std::string MaskText(unsigned int accessMask) {
    char text[16];
    std::snprintf(text, sizeof(text), " mask 0x%X", accessMask);
    return text;
}

std::string KeyOf(const std::string& value) { return value.substr(0, value.rfind(':')); }

}  // namespace

bool MemoryRegistry::NameOrder::operator()(const std::string& left,
                                           const std::string& right) const {
    return _stricmp(left.c_str(), right.c_str()) < 0;
}

MemoryRegistry::MemoryRegistry(std::function<void(const std::string&)> accessObserver)
    : observer(std::move(accessObserver)) {}

void MemoryRegistry::AddKey(const std::string& key) {
    const std::lock_guard lock(mutex);
    keys.insert(key);
}

void MemoryRegistry::RemoveKey(const std::string& key) {
    const std::lock_guard lock(mutex);
    keys.erase(key);
}

void MemoryRegistry::SetValue(const std::string& value, std::optional<std::int64_t> number) {
    const std::lock_guard lock(mutex);
    values.erase(value);
    if (number) {
        keys.insert(KeyOf(value));
        values[value] = *number;
    }
}

std::optional<std::int64_t> MemoryRegistry::Value(const std::string& value) const {
    const std::lock_guard lock(mutex);
    const auto found = values.find(value);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void MemoryRegistry::FailReads(const std::string& value, DWORD error) {
    const std::lock_guard lock(mutex);
    readErrors[value] = error;
}

void MemoryRegistry::FailWrites(const std::string& value, DWORD error) {
    const std::lock_guard lock(mutex);
    writeErrors[value] = error;
}

int MemoryRegistry::Answer(void* context, int operation, HKEY root, const wchar_t* subKey,
                           const wchar_t* valueName, unsigned int accessMask, long long* value,
                           unsigned long* error) {
    MemoryRegistry& registry = *static_cast<MemoryRegistry*>(context);
    const auto note = [&](const std::string& access) {
        if (registry.observer) {
            registry.observer(access);
        }
    };
    // A sub-key that begins with a backslash keeps it, so that it shows.
    const std::string key = RootName(root) + "\\" + ToUtf8(subKey);
    if (operation == FILE_KIT_KEY_EXISTS) {
        note("exists " + key);
        const std::lock_guard lock(registry.mutex);
        return registry.keys.count(key) != 0 ? FILE_KIT_SUCCEED : FILE_KIT_FAIL;
    }
    const std::string path = key + ":" + ToUtf8(valueName);
    const bool wide = operation == FILE_KIT_GET_INT64 || operation == FILE_KIT_SET_INT64;
    const std::string access = (wide ? "int64 " : "int32 ") + path + MaskText(accessMask);
    const bool reads = operation == FILE_KIT_GET_INT32 || operation == FILE_KIT_GET_INT64;
    note(reads ? "read " + access : "write " + access + " = " + std::to_string(*value));
    const std::lock_guard lock(registry.mutex);
    const auto& errors = reads ? registry.readErrors : registry.writeErrors;
    if (const auto planned = errors.find(path); planned != errors.end()) {
        *error = planned->second;
        return FILE_KIT_FAIL;
    }
    if (!reads) {
        registry.keys.insert(KeyOf(path));
        registry.values[path] = *value;
        return FILE_KIT_SUCCEED;
    }
    const auto found = registry.values.find(path);
    *value = found == registry.values.end() ? *value : found->second;
    return found == registry.values.end() ? FILE_KIT_FAIL : FILE_KIT_SUCCEED;
}

}  // namespace simulation
