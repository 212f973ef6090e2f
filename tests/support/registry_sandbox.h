// The real registry, but none of the machine's keys.
#pragma once

#include <windows.h>

#include <string>

namespace test_support {

/// While it lives, this process sees an empty key of its own in place of a predefined one such as
/// HKEY_LOCAL_MACHINE. The key is deleted at the end. Throws std::runtime_error when the registry
/// refuses.
class RegistrySandbox {
public:
    explicit RegistrySandbox(HKEY predefined);
    ~RegistrySandbox();
    RegistrySandbox(const RegistrySandbox&) = delete;
    RegistrySandbox& operator=(const RegistrySandbox&) = delete;

private:
    HKEY predefined;
    std::wstring path;
};

}  // namespace test_support
