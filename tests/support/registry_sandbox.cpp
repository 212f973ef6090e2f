#include "support/registry_sandbox.h"

#include <stdexcept>

namespace test_support {
namespace {

void Require(LSTATUS status, const char* what) {
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error(std::string(what) + ", error " + std::to_string(status));
    }
}

}  // namespace

RegistrySandbox::RegistrySandbox(HKEY predefinedKey) : predefined(predefinedKey) {
    static unsigned number = 0;
    path = L"Software\\Tallyport tests\\" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++number);
    // A crashed process with the same id may have left it behind.
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
    HKEY key = nullptr;
    Require(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), /*Reserved=*/0, /*lpClass=*/nullptr,
                            REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                            /*lpSecurityAttributes=*/nullptr, &key, /*lpdwDisposition=*/nullptr),
            "no registry key for the test");
    const LSTATUS status = RegOverridePredefKey(predefined, key);
    RegCloseKey(key);
    Require(status, "the predefined key cannot be replaced");
}

RegistrySandbox::~RegistrySandbox() {
    RegOverridePredefKey(predefined, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
}

}  // namespace test_support
