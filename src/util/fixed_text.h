// Text in a fixed-size buffer that the operating system fills.
#pragma once

#include <cstddef>
#include <cwchar>
#include <string>

/// The text up to its terminator, or the whole buffer where there is none.
template <std::size_t kCapacity>
std::wstring TextOf(const wchar_t (&buffer)[kCapacity]) {
    return {buffer, wcsnlen(buffer, kCapacity)};
}
