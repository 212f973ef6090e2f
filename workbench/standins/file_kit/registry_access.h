// The registry as FileKit uses it: 32-bit integers as REG_DWORD, 64-bit integers as REG_QWORD. All
// functions return 0 or the Win32 error code and have closed what they opened.
#pragma once

#include <windows.h>

#include <cstdint>

namespace standins {

/// An opened key, closed on every path.
class RegistryKey {
public:
    RegistryKey() = default;
    ~RegistryKey() {
        if (key != nullptr) {
            RegCloseKey(key);
        }
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    LSTATUS Open(HKEY root, const wchar_t* subKey, REGSAM access) {
        return RegOpenKeyExW(root, subKey, /*ulOptions=*/0, access, &key);
    }

    LSTATUS Create(HKEY root, const wchar_t* subKey, REGSAM access) {
        return RegCreateKeyExW(root, subKey, /*Reserved=*/0, /*lpClass=*/nullptr,
                               REG_OPTION_NON_VOLATILE, access, /*lpSecurityAttributes=*/nullptr,
                               &key, /*lpdwDisposition=*/nullptr);
    }

    HKEY Get() const { return key; }

private:
    HKEY key = nullptr;
};

/// How an integer of this size is stored.
constexpr DWORD TypeFor(std::int32_t) { return REG_DWORD; }
constexpr DWORD TypeFor(std::int64_t) { return REG_QWORD; }

/// ERROR_INVALID_DATATYPE when the value is there, but not an integer of this size. `value` is
/// changed on success only.
template <typename Integer>
LSTATUS ReadInteger(HKEY root, const wchar_t* subKey, const wchar_t* valueName, REGSAM access,
                    Integer& value) {
    RegistryKey key;
    LSTATUS status = key.Open(root, subKey, access);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    Integer stored = 0;
    DWORD type = REG_NONE;
    DWORD size = sizeof(stored);
    status = RegQueryValueExW(key.Get(), valueName, /*lpReserved=*/nullptr, &type,
                              reinterpret_cast<BYTE*>(&stored), &size);
    // A value too long for the buffer is of another type, too.
    const bool found = status == ERROR_SUCCESS || status == ERROR_MORE_DATA;
    if (found && (type != TypeFor(value) || size != sizeof(stored))) {
        return ERROR_INVALID_DATATYPE;
    }
    if (status == ERROR_SUCCESS) {
        value = stored;
    }
    return status;
}

/// Creates the key and the value where they do not exist.
template <typename Integer>
LSTATUS WriteInteger(HKEY root, const wchar_t* subKey, const wchar_t* valueName, REGSAM access,
                     Integer value) {
    RegistryKey key;
    const LSTATUS status = key.Create(root, subKey, access);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    return RegSetValueExW(key.Get(), valueName, /*Reserved=*/0, TypeFor(value),
                          reinterpret_cast<const BYTE*>(&value), sizeof(value));
}

/// Success when the key can be opened.
inline LSTATUS FindKey(HKEY root, const wchar_t* subKey, REGSAM access) {
    RegistryKey key;
    return key.Open(root, subKey, access);
}

}  // namespace standins
