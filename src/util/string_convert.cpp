#include "util/string_convert.h"

#include <windows.h>

#include <cstddef>
#include <memory>
#include <new>

std::string WStringToString(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_ACP, /*dwFlags=*/0, text.data(), length,
                                         /*lpMultiByteStr=*/nullptr, /*cbMultiByte=*/0,
                                         /*lpDefaultChar=*/nullptr, /*lpUsedDefaultChar=*/nullptr);
    if (size == 0) {
        return {};
    }
    std::string result(static_cast<std::size_t>(size), '\0');
    // The result is dropped: after a failure the NULs stay.
    WideCharToMultiByte(CP_ACP, /*dwFlags=*/0, text.data(), length, result.data(), size,
                        /*lpDefaultChar=*/nullptr, /*lpUsedDefaultChar=*/nullptr);
    return result;
}

std::string WStringToUtf8(const std::wstring& text) {
    // Counts the terminating NUL; one more byte keeps the buffer terminated whatever is written.
    const int size = WideCharToMultiByte(CP_UTF8, /*dwFlags=*/0, text.c_str(), /*cchWideChar=*/-1,
                                         /*lpMultiByteStr=*/nullptr, /*cbMultiByte=*/0,
                                         /*lpDefaultChar=*/nullptr, /*lpUsedDefaultChar=*/nullptr);
    const std::unique_ptr<char[]> buffer(
        new (std::nothrow) char[static_cast<std::size_t>(size) + 1]());
    if (!buffer) {
        return {};
    }
    WideCharToMultiByte(CP_UTF8, /*dwFlags=*/0, text.c_str(), /*cchWideChar=*/-1, buffer.get(),
                        size, /*lpDefaultChar=*/nullptr, /*lpUsedDefaultChar=*/nullptr);
    return buffer.get();
}

std::wstring StringToWString(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_ACP, /*dwFlags=*/0, text.data(), length,
                                         /*lpWideCharStr=*/nullptr, /*cchWideChar=*/0);
    if (size == 0) {
        return {};
    }
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    // The result is dropped: after a failure the NULs stay.
    MultiByteToWideChar(CP_ACP, /*dwFlags=*/0, text.data(), length, result.data(), size);
    return result;
}
