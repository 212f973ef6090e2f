#include "common/text.h"

#include <windows.h>

namespace workbench {
namespace {

/// Empty when the bytes are not valid in the code page and `flags` demands that they are.
std::wstring Decode(std::string_view bytes, unsigned int codePage, DWORD flags) {
    const int byteCount = static_cast<int>(bytes.size());
    const int wideCount = MultiByteToWideChar(codePage, flags, bytes.data(), byteCount, nullptr, 0);
    if (wideCount <= 0) {
        return {};
    }
    std::wstring text(static_cast<size_t>(wideCount), L'\0');
    MultiByteToWideChar(codePage, flags, bytes.data(), byteCount, text.data(), wideCount);
    return text;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    const int wideCount = static_cast<int>(text.size());
    const int byteCount =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), wideCount, nullptr, 0, nullptr, nullptr);
    if (byteCount <= 0) {
        return {};
    }
    std::string bytes(static_cast<size_t>(byteCount), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), wideCount, bytes.data(), byteCount, nullptr,
                        nullptr);
    return bytes;
}

std::wstring FromUtf8(std::string_view text) { return Decode(text, CP_UTF8, 0); }

std::wstring ToWide(std::string_view bytes) {
    const std::wstring text = Decode(bytes, CP_UTF8, MB_ERR_INVALID_CHARS);
    return text.empty() ? Decode(bytes, CP_ACP, 0) : text;
}

}  // namespace workbench
