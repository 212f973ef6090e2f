// Where the libraries of this folder tell what is asked of them: lines on standard output.
#pragma once

#include <cstdio>
#include <string>

/// Writes "LIBRARY: what" at once. Callable from any thread.
inline void Record(const char* library, const std::string& what) {
    std::printf("%s: %s\n", library, what.c_str());
    std::fflush(stdout);
}

/// The ASCII part of a text; enough to recognise it by.
inline std::string Plain(const std::wstring& text) {
    std::string plain;
    for (const wchar_t unit : text) {
        plain += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    return plain;
}
