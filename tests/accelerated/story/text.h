// Texts of the model. It converts them by itself, so that a wrong conversion of the plug-in shows.
#pragma once

#include <string>
#include <string_view>

namespace story {

/// Valid UTF-8 only.
std::wstring Utf16FromUtf8(std::string_view text);

/// Up to the first NUL. Half a surrogate pair becomes U+FFFD.
std::string Utf8FromUtf16(std::wstring_view text);

/// The letters a to z only.
std::wstring UpperCase(std::wstring text);
std::string UpperCase(std::string text);

/// Adds a line, unless it is empty or stands somewhere in the text already.
void AppendUnique(std::wstring& text, const std::wstring& added);

}  // namespace story
