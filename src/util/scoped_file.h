// Owner of an open file or device.
#pragma once

#include <windows.h>

#include "util/scoped_handle.h"

/// Files and devices from CreateFile, whose "none" is INVALID_HANDLE_VALUE, not null.
struct FileTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type file) noexcept { CloseHandle(file); }
};
using ScopedFile = ScopedHandle<FileTraits>;
