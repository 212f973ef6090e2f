#include "host/wine.h"

#include <windows.h>

namespace host {

std::optional<std::string> WineVersion() {
    const auto version = reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
    return version == nullptr ? std::nullopt : std::optional<std::string>(version());
}

}  // namespace host
