// FileKit.dll: the suite's registry helper.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#if defined(FILE_KIT_EXPORTS)
#define FILE_KIT_API __declspec(dllexport)
#else
#define FILE_KIT_API __declspec(dllimport)
#endif

namespace QD {

/// Registry access by root key, sub-key and value name. All calls return false on failure and
/// leave the error number in the thread's last error; outputs are changed only on success.
class Registry {
public:
    FILE_KIT_API Registry();
    FILE_KIT_API ~Registry();  // NOLINT(performance-trivially-destructible): an export
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// Root under which KeyExists looks. The key is not owned.
    FILE_KIT_API void SetRootKey(HKEY rootKey);
    FILE_KIT_API bool KeyExists(const std::wstring& subKey) const;

    FILE_KIT_API static bool GetValue(HKEY rootKey, const std::wstring& subKey,
                                      const std::wstring& valueName, std::int32_t& value,
                                      std::uint32_t accessMask);
    FILE_KIT_API static bool GetValue(HKEY rootKey, const std::wstring& subKey,
                                      const std::wstring& valueName, std::int64_t& value,
                                      std::uint32_t accessMask);

    /// Creates the sub-key and the value where they do not exist.
    FILE_KIT_API static bool SetValue(HKEY rootKey, const std::wstring& subKey,
                                      const std::wstring& valueName, const std::int32_t& value,
                                      std::uint32_t accessMask);
    FILE_KIT_API static bool SetValue(HKEY rootKey, const std::wstring& subKey,
                                      const std::wstring& valueName, const std::int64_t& value,
                                      std::uint32_t accessMask);

private:
    HKEY root = nullptr;
};

}  // namespace QD
