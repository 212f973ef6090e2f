#include "platform/file_kit.h"

#include "standins/common/callback_slot.h"
#include "standins/file_kit/file_kit_control.h"
#include "standins/file_kit/registry_access.h"

namespace {

standins::CallbackSlot<FileKitInterceptor> interceptor;

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
                standins::ReadInteger(root, subKey.c_str(), valueName.c_str(), accessMask, stored);
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
        return standins::WriteInteger(root, subKey.c_str(), valueName.c_str(), accessMask, value);
    });
}

}  // namespace

namespace QD {

Registry::Registry() = default;

Registry::~Registry() = default;

void Registry::SetRootKey(HKEY rootKey) { root = rootKey; }

bool Registry::KeyExists(const std::wstring& subKey) const {
    long long unused = 0;
    return Answer(FILE_KIT_KEY_EXISTS, root, subKey, /*valueName=*/nullptr, KEY_READ, unused,
                  [&] { return standins::FindKey(root, subKey.c_str(), KEY_READ); });
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

void FileKit_Reset() { FileKit_SetInterceptor(nullptr, nullptr); }
