// The one way to write a log line.
#pragma once

#include <locale>
#include <sstream>

#include "platform/log_kit.h"

/// Writes one line: the parts in order, then the writing function's qualified name in parentheses.
///
/// `functionName` is a literal, not a compiler macro, so that a line reads the same whichever
/// compiler built the plug-in. Where two lines carry one name, it is a constant called after it,
/// such as `kInitFunction`. Numbers come out in plain decimal whatever the global locale. All
/// arguments, GetLastError() among them, are evaluated before a stream is built. Callable from any
/// thread.
template <typename... Parts>
void WriteLogLine(LOG_MESSAGE_LEVEL level, const char* functionName, const Parts&... parts) {
    std::wstringstream line;
    line.imbue(std::locale::classic());
    (line << ... << parts);
    line << "(" << functionName << ")";
    VrLogger::GetInstance()->Log(level, line);
}
