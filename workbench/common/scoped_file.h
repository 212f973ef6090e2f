// An open file.
#pragma once

#include "util/scoped_handle.h"

namespace workbench {

struct FileTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) noexcept { CloseHandle(handle); }
};
using ScopedFile = ScopedHandle<FileTraits>;

}  // namespace workbench
