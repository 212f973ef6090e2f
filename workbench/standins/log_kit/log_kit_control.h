// What a host or a test sets on LogKit.dll. The plug-in never sees it. Every function may be called
// from any thread.
#pragma once

#include "platform/log_kit.h"

extern "C" {

/// Receives each line as the caller wrote it, without time and level. Lines come one at a time, in
/// the order in which console and file get them, on the thread that logs. It must not call LogKit.
typedef void (*LogKitSink)(void* context, int level, const wchar_t* text);

/// Null removes it. After the return the previous one is not called any more.
LOG_KIT_API void LogKit_SetSink(LogKitSink sink, void* context);

/// Whether lines go to standard output, as "YYYY-MM-DD HH:MM:SS.mmm [3] text" in local time and
/// UTF-8. On by default.
LOG_KIT_API void LogKit_SetConsole(int enabled);

/// From now on appends the same lines to the file, in UTF-8 and ended by a line feed, and closes
/// the previous file. Returns 0, or the Win32 error code, and then keeps the previous file.
LOG_KIT_API int LogKit_OpenFile(const wchar_t* path);
LOG_KIT_API void LogKit_CloseFile(void);

/// Back to the defaults: no sink, console on, no file.
LOG_KIT_API void LogKit_Reset(void);

}  // extern "C"
