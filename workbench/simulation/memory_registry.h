// The registry values that FileKit reads and writes, in memory.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "simulation/slim_mutex.h"

namespace simulation {

/// Answers for the registry once `Answer` is FileKit's interceptor with this object as its context.
/// Keys are written "HKLM\Sub\Key" or "HKU\Sub\Key", values "HKLM\Sub\Key:Value"; letter case does
/// not count. Safe to use from any thread.
class MemoryRegistry {
public:
    /// `observer` gets each access on the thread that makes it:
    ///     exists HKU\S-1-5-21\Key
    ///     read int64 HKLM\Sub\Key:Value mask 0xF003F
    ///     write int32 HKLM\Sub\Key:Value mask 0xF003F = 7
    explicit MemoryRegistry(std::function<void(const std::string&)> observer = {});
    MemoryRegistry(const MemoryRegistry&) = delete;
    MemoryRegistry& operator=(const MemoryRegistry&) = delete;

    static int Answer(void* context, int operation, HKEY root, const wchar_t* subKey,
                      const wchar_t* valueName, unsigned int accessMask, long long* value,
                      unsigned long* error);

    void AddKey(const std::string& key);
    /// The key counts as absent from now on; its values can still be read.
    void RemoveKey(const std::string& key);
    /// Adds the value's key, too. An absent number removes the value only.
    void SetValue(const std::string& value, std::optional<std::int64_t> number);
    std::optional<std::int64_t> Value(const std::string& value) const;

    /// From now on accesses to this value fail with `error`.
    void FailReads(const std::string& value, DWORD error);
    void FailWrites(const std::string& value, DWORD error);

private:
    struct NameOrder {
        bool operator()(const std::string& left, const std::string& right) const;
    };

    const std::function<void(const std::string&)> observer;
    mutable SlimMutex mutex;
    std::set<std::string, NameOrder> keys;
    std::map<std::string, std::int64_t, NameOrder> values;
    std::map<std::string, DWORD, NameOrder> readErrors;
    std::map<std::string, DWORD, NameOrder> writeErrors;
};

}  // namespace simulation
