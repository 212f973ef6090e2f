// A registry in memory behind FileKit, so that tests neither need nor leave anything on the
// machine.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "simulation/slim_mutex.h"
#include "support/timeline.h"

namespace test_support {

/// While it lives, FileKit answers from here. Keys are written "HKLM\Sub\Key" or "HKU\Sub\Key",
/// values "HKLM\Sub\Key:Value". One at a time in a process.
class MemoryRegistry {
public:
    /// Each access is noted in `timeline`:
    ///     exists HKU\S-1-5-21\Key
    ///     read int64 HKLM\Sub\Key:Value mask 0xF003F
    ///     write int32 HKLM\Sub\Key:Value mask 0xF003F = 7
    explicit MemoryRegistry(Timeline& timeline);
    ~MemoryRegistry();
    MemoryRegistry(const MemoryRegistry&) = delete;
    MemoryRegistry& operator=(const MemoryRegistry&) = delete;

    void AddKey(const std::string& key);
    /// The key counts as absent from now on; its values can still be read.
    void RemoveKey(const std::string& key);
    /// Adds the value's key, too.
    void SetValue(const std::string& value, std::int64_t number);
    std::optional<std::int64_t> Value(const std::string& value) const;

    /// From now on accesses to this value fail with `error`.
    void FailReads(const std::string& value, DWORD error);
    void FailWrites(const std::string& value, DWORD error);

private:
    static int Intercept(void* context, int operation, HKEY root, const wchar_t* subKey,
                         const wchar_t* valueName, unsigned int accessMask, long long* value,
                         unsigned long* error);
    int Read(const std::string& value, long long& number, unsigned long& error) const;
    int Write(const std::string& value, long long number, unsigned long& error);

    Timeline& timeline;
    mutable simulation::SlimMutex mutex;
    std::set<std::string> keys;
    std::map<std::string, std::int64_t> values;
    std::map<std::string, DWORD> readErrors;
    std::map<std::string, DWORD> writeErrors;
};

}  // namespace test_support
