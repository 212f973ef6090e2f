#include "platform/file_kit.h"

#include "standins/common/callback_slot.h"
#include "standins/file_kit/file_kit_control.h"
#include "util/scoped_registry_key.h"

namespace {

standins::CallbackSlot<FileKitInterceptor> interceptor;

// The registry: 32-bit integers as REG_DWORD, 64-bit integers as REG_QWORD. These functions return
// 0 or the Win32 error code and have closed what they opened.

/// How an integer of this size is stored.
constexpr DWORD TypeFor(std::int32_t) { return REG_DWORD; }
constexpr DWORD TypeFor(std::int64_t) { return REG_QWORD; }

/// ERROR_INVALID_DATATYPE when the value is there, but not an integer of this size. `value` is
/// changed on success only.
template <typename Integer>
LSTATUS ReadInteger(HKEY root, const wchar_t* subKey, const wchar_t* valueName, REGSAM access,
                    Integer& value) {
    HKEY opened = nullptr;
    LSTATUS status = RegOpenKeyExW(root, subKey, /*ulOptions=*/0, access, &opened);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    const ScopedRegistryKey key(opened);
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
    HKEY opened = nullptr;
    const LSTATUS status = RegCreateKeyExW(
        root, subKey, /*Reserved=*/0, /*lpClass=*/nullptr, REG_OPTION_NON_VOLATILE, access,
        /*lpSecurityAttributes=*/nullptr, &opened, /*lpdwDisposition=*/nullptr);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    const ScopedRegistryKey key(opened);
    return RegSetValueExW(key.Get(), valueName, /*Reserved=*/0, TypeFor(value),
                          reinterpret_cast<const BYTE*>(&value), sizeof(value));
}

/// Lets the interceptor answer, else `askRegistry`. Turns the status into result and last error;
/// by then the key is closed, so that nothing disturbs the error number any more.
template <typename Ask>
bool Answer(FileKitOperation operation, HKEY root, const std::wstring& subKey,
            const wchar_t* valueName, unsigned int accessMask, long long& value,
            const Ask& askRegistry) {
    int answer = FILE_KIT_GO_ON;
    unsigned long error = ERROR_FILE_NOT_FOUND;
    interceptor.With([&](FileKitInterceptor intercept, void* context) {
        answer = intercept(context, operation, root, subKey.c_str(), valueName, accessMask, &value,
                           &error);
    });
    if (answer == FILE_KIT_SUCCEED) {
        return true;
    }
    if (answer == FILE_KIT_GO_ON) {
        const LSTATUS status = askRegistry();
        if (status == ERROR_SUCCESS) {
            return true;
        }
        error = static_cast<unsigned long>(status);
    }
    SetLastError(error);
    return false;
}

template <typename Integer>
bool GetInteger(FileKitOperation operation, HKEY root, const std::wstring& subKey,
                const std::wstring& valueName, Integer& value, unsigned int accessMask) {
    long long answered = 0;
    const bool succeeded =
        Answer(operation, root, subKey, valueName.c_str(), accessMask, answered, [&] {
            Integer stored = 0;
            const LSTATUS status =
                ReadInteger(root, subKey.c_str(), valueName.c_str(), accessMask, stored);
            answered = stored;
            return status;
        });
    if (succeeded) {
        value = static_cast<Integer>(answered);
    }
    return succeeded;
}

template <typename Integer>
bool SetInteger(FileKitOperation operation, HKEY root, const std::wstring& subKey,
                const std::wstring& valueName, Integer value, unsigned int accessMask) {
    long long written = value;
    return Answer(operation, root, subKey, valueName.c_str(), accessMask, written, [&] {
        return WriteInteger(root, subKey.c_str(), valueName.c_str(), accessMask, value);
    });
}

}  // namespace

namespace QD {

Registry::Registry() = default;

Registry::~Registry() = default;

void Registry::SetRootKey(HKEY rootKey) { root = rootKey; }

bool Registry::KeyExists(const std::wstring& subKey) const {
    long long unused = 0;
    return Answer(FILE_KIT_KEY_EXISTS, root, subKey, /*valueName=*/nullptr, KEY_READ, unused, [&] {
        HKEY opened = nullptr;
        const LSTATUS status =
            RegOpenKeyExW(root, subKey.c_str(), /*ulOptions=*/0, KEY_READ, &opened);
        const ScopedRegistryKey key(status == ERROR_SUCCESS ? opened : nullptr);
        return status;
    });
}

bool Registry::GetValue(HKEY rootKey, const std::wstring& subKey, const std::wstring& valueName,
                        std::int32_t& value, std::uint32_t accessMask) {
    return GetInteger(FILE_KIT_GET_INT32, rootKey, subKey, valueName, value, accessMask);
}

bool Registry::GetValue(HKEY rootKey, const std::wstring& subKey, const std::wstring& valueName,
                        std::int64_t& value, std::uint32_t accessMask) {
    return GetInteger(FILE_KIT_GET_INT64, rootKey, subKey, valueName, value, accessMask);
}

bool Registry::SetValue(HKEY rootKey, const std::wstring& subKey, const std::wstring& valueName,
                        const std::int32_t& value, std::uint32_t accessMask) {
    return SetInteger(FILE_KIT_SET_INT32, rootKey, subKey, valueName, value, accessMask);
}

bool Registry::SetValue(HKEY rootKey, const std::wstring& subKey, const std::wstring& valueName,
                        const std::int64_t& value, std::uint32_t accessMask) {
    return SetInteger(FILE_KIT_SET_INT64, rootKey, subKey, valueName, value, accessMask);
}

}  // namespace QD

void FileKit_SetInterceptor(FileKitInterceptor newInterceptor, void* context) {
    interceptor.Set(newInterceptor, context);
}
