// What a host or a test sets on FileKit.dll. The plug-in never sees it. Every function may be
// called from any thread.
#pragma once

#include "platform/file_kit.h"

extern "C" {

enum FileKitOperation {
    FILE_KIT_KEY_EXISTS,
    FILE_KIT_GET_INT32,
    FILE_KIT_GET_INT64,
    FILE_KIT_SET_INT32,
    FILE_KIT_SET_INT64,
};

/// What an interceptor returns.
enum FileKitAnswer {
    FILE_KIT_GO_ON = 0,    ///< Ask the real registry.
    FILE_KIT_SUCCEED = 1,  ///< Success without the real registry; reads yield `*value`.
    FILE_KIT_FAIL = 2,     ///< Failure with `*error` as the thread's last error.
};

/// Sees each access before the real registry does, on the calling thread, possibly on several at
/// once. `operation` is a FileKitOperation. `valueName` is null for FILE_KIT_KEY_EXISTS.
/// `accessMask` is the mask with which the key is opened. `*value` holds the value to be written,
/// or 0 for a read. `*error` is ERROR_FILE_NOT_FOUND unless changed. It must not call FileKit.
typedef int (*FileKitInterceptor)(void* context, int operation, HKEY root, const wchar_t* subKey,
                                  const wchar_t* valueName, unsigned int accessMask,
                                  long long* value, unsigned long* error);

/// Null removes it. After the return the previous one is not called any more.
FILE_KIT_API void FileKit_SetInterceptor(FileKitInterceptor interceptor, void* context);

}  // extern "C"
