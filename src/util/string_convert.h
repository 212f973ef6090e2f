// Conversions between wide (UTF-16) and narrow strings.
#pragma once

#include <string>

/// Converts to the system's ANSI code page, embedded NULs included. A character that the code page
/// lacks becomes its default character. Empty when the system gives no size; NULs of that size when
/// it then fails to convert.
std::string WStringToString(const std::wstring& text);

/// Converts to UTF-8, up to the first NUL. An unpaired surrogate becomes U+FFFD. Empty on failure.
std::string WStringToUtf8(const std::wstring& text);

/// Converts from the system's ANSI code page, embedded NULs included. Empty when the system gives
/// no size; NULs of that size when it then fails to convert.
std::wstring StringToWString(const std::string& text);
