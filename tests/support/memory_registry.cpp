#include "support/memory_registry.h"

#include <cstdio>
#include <mutex>

#include "simulation/call_text.h"
#include "standins/file_kit/file_kit_control.h"

namespace test_support {
namespace {

std::string RootName(HKEY root) {
    if (root == HKEY_LOCAL_MACHINE) {
        return "HKLM";
    }
    if (root == HKEY_USERS) {
        return "HKU";
    }
    return "unexpected root";
}

std::string MaskText(unsigned int accessMask) {
    char text[16];
    std::snprintf(text, sizeof(text), " mask 0x%X", accessMask);
    return text;
}

}  // namespace

MemoryRegistry::MemoryRegistry(Timeline& timelineOfTest) : timeline(timelineOfTest) {
    FileKit_SetInterceptor(&Intercept, this);
}

MemoryRegistry::~MemoryRegistry() { FileKit_Reset(); }

void MemoryRegistry::AddKey(const std::string& key) {
    const std::lock_guard lock(mutex);
    keys.insert(key);
}

void MemoryRegistry::RemoveKey(const std::string& key) {
    const std::lock_guard lock(mutex);
    keys.erase(key);
}

void MemoryRegistry::SetValue(const std::string& value, std::int64_t number) {
    const std::lock_guard lock(mutex);
    keys.insert(value.substr(0, value.rfind(':')));
    values[value] = number;
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

int MemoryRegistry::Intercept(void* context, int operation, HKEY root, const wchar_t* subKey,
                              const wchar_t* valueName, unsigned int accessMask, long long* value,
                              unsigned long* error) {
    MemoryRegistry& registry = *static_cast<MemoryRegistry*>(context);
    // A sub-key that begins with a backslash keeps it, so that it shows.
    const std::string key = RootName(root) + "\\" + simulation::ToUtf8(subKey);
    if (operation == FILE_KIT_KEY_EXISTS) {
        registry.timeline.Note("exists " + key);
        const std::lock_guard lock(registry.mutex);
        return registry.keys.count(key) != 0 ? FILE_KIT_SUCCEED : FILE_KIT_FAIL;
    }
    const std::string path = key + ":" + simulation::ToUtf8(valueName);
    const std::string access = path + MaskText(accessMask);
    switch (operation) {
        case FILE_KIT_GET_INT32:
            registry.timeline.Note("read int32 " + access);
            return registry.Read(path, *value, *error);
        case FILE_KIT_GET_INT64:
            registry.timeline.Note("read int64 " + access);
            return registry.Read(path, *value, *error);
        case FILE_KIT_SET_INT32:
            registry.timeline.Note("write int32 " + access + " = " + std::to_string(*value));
            return registry.Write(path, *value, *error);
        case FILE_KIT_SET_INT64:
            registry.timeline.Note("write int64 " + access + " = " + std::to_string(*value));
            return registry.Write(path, *value, *error);
        default:
            registry.timeline.Note("unknown registry operation");
            return FILE_KIT_FAIL;
    }
}

int MemoryRegistry::Read(const std::string& value, long long& number, unsigned long& error) const {
    const std::lock_guard lock(mutex);
    if (const auto planned = readErrors.find(value); planned != readErrors.end()) {
        error = planned->second;
        return FILE_KIT_FAIL;
    }
    const auto found = values.find(value);
    if (found == values.end()) {
        return FILE_KIT_FAIL;
    }
    number = found->second;
    return FILE_KIT_SUCCEED;
}

int MemoryRegistry::Write(const std::string& value, long long number, unsigned long& error) {
    const std::lock_guard lock(mutex);
    if (const auto planned = writeErrors.find(value); planned != writeErrors.end()) {
        error = planned->second;
        return FILE_KIT_FAIL;
    }
    keys.insert(value.substr(0, value.rfind(':')));
    values[value] = number;
    return FILE_KIT_SUCCEED;
}

}  // namespace test_support
