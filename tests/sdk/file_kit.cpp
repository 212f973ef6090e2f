// A registry that lives in memory and ends with the process.
#include "platform/file_kit.h"

#include <map>
#include <mutex>

#include "record.h"

namespace {

std::mutex mutex;
std::map<std::wstring, std::int64_t> values;

template <typename Integer>
bool Get(const std::wstring& path, Integer& value) {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = values.find(path);
    Record("other FileKit", "read " + Plain(path));
    if (found == values.end()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return false;
    }
    value = static_cast<Integer>(found->second);
    return true;
}

bool Set(const std::wstring& path, std::int64_t value) {
    const std::lock_guard<std::mutex> lock(mutex);
    values[path] = value;
    Record("other FileKit", "write " + Plain(path));
    return true;
}

}  // namespace

namespace QD {

Registry::Registry() = default;

Registry::~Registry() = default;

void Registry::SetRootKey(HKEY rootKey) { root = rootKey; }

bool Registry::KeyExists(const std::wstring& subKey) const {
    Record("other FileKit", "look for " + Plain(subKey));
    SetLastError(ERROR_FILE_NOT_FOUND);
    return false;
}

bool Registry::GetValue(HKEY, const std::wstring& subKey, const std::wstring& valueName,
                        std::int32_t& value, std::uint32_t) {
    return Get(subKey + L":" + valueName, value);
}

bool Registry::GetValue(HKEY, const std::wstring& subKey, const std::wstring& valueName,
                        std::int64_t& value, std::uint32_t) {
    return Get(subKey + L":" + valueName, value);
}

bool Registry::SetValue(HKEY, const std::wstring& subKey, const std::wstring& valueName,
                        const std::int32_t& value, std::uint32_t) {
    return Set(subKey + L":" + valueName, value);
}

bool Registry::SetValue(HKEY, const std::wstring& subKey, const std::wstring& valueName,
                        const std::int64_t& value, std::uint32_t) {
    return Set(subKey + L":" + valueName, value);
}

}  // namespace QD
