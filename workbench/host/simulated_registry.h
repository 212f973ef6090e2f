// The registry of a simulated machine.
#pragma once

#include <windows.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "host/suite.h"

namespace host {

/// While it lives, FileKit reads and writes these values instead of the real registry. Names do not
/// tell letter cases apart. Safe to use from any thread.
class SimulatedRegistry {
public:
    explicit SimulatedRegistry(const Suite& theSuite);
    ~SimulatedRegistry();
    SimulatedRegistry(const SimulatedRegistry&) = delete;
    SimulatedRegistry& operator=(const SimulatedRegistry&) = delete;

    /// Nothing when there is no such value.
    std::optional<std::int64_t> Get(HKEY root, const std::wstring& subKey,
                                    const std::wstring& valueName) const;
    /// Creates key and value where they do not exist. An absent number removes the value only.
    void Set(HKEY root, const std::wstring& subKey, const std::wstring& valueName,
             std::optional<std::int64_t> number);

private:
    struct NameOrder {
        bool operator()(const std::wstring& left, const std::wstring& right) const;
    };
    using Values = std::map<std::wstring, std::int64_t, NameOrder>;
    using Keys = std::map<std::wstring, Values, NameOrder>;

    static int Answer(void* context, int operation, HKEY root, const wchar_t* subKey,
                      const wchar_t* valueName, unsigned int accessMask, long long* value,
                      unsigned long* error);
    int Read(HKEY root, const wchar_t* subKey, const wchar_t* valueName, long long& value) const;

    const Suite& suite;
    mutable std::mutex mutex;
    std::map<HKEY, Keys> roots;
};

}  // namespace host
