// Owner of an open registry key.
#pragma once

#include <windows.h>

#include "util/scoped_handle.h"

struct RegistryKeyTraits {
    using Type = HKEY;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type key) noexcept { RegCloseKey(key); }
};
using ScopedRegistryKey = ScopedHandle<RegistryKeyTraits>;
