#include "library/device_sources/stored_edid.h"

#include <stdexcept>

namespace real_devices {
namespace {

constexpr wchar_t kValue[] = L"EDID";

}  // namespace

StoredEdid::StoredEdid(const std::wstring& deviceId, const std::vector<BYTE>& edid)
    : key(L"SYSTEM\\CurrentControlSet\\Enum\\" + deviceId + L"\\Device Parameters") {
    std::vector<BYTE> present(65'536);
    auto size = static_cast<DWORD>(present.size());
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), kValue, RRF_RT_REG_BINARY, nullptr,
                     present.data(), &size) == ERROR_SUCCESS) {
        present.resize(size);
        before = present;
    }
    const LSTATUS status = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), kValue, REG_BINARY,
                                           edid.data(), static_cast<DWORD>(edid.size()));
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error("the EDID cannot be stored, error " + std::to_string(status));
    }
}

StoredEdid::~StoredEdid() {
    if (before) {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), kValue, REG_BINARY, before->data(),
                        static_cast<DWORD>(before->size()));
    } else {
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), kValue);
    }
}

}  // namespace real_devices
