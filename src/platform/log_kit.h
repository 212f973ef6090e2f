// LogKit.dll: the suite's diagnostic log.
#pragma once

#include <sstream>

#if defined(LOG_KIT_EXPORTS)
#define LOG_KIT_API __declspec(dllexport)
#else
#define LOG_KIT_API __declspec(dllimport)
#endif

/// Severity of a log line. The plug-in writes at these two levels only.
enum LOG_MESSAGE_LEVEL {
    LOG_LEVEL_NORMAL = 3,
    LOG_LEVEL_ERROR = 4,
};

/// The process-wide logger. Safe to call from any thread.
class VrLogger {
public:
    /// Never null; owned by the library.
    LOG_KIT_API static VrLogger* GetInstance();

    /// Writes the text that `stream` holds as one line. The library adds time and level; it keeps
    /// no reference to the stream and reports no errors.
    LOG_KIT_API void Log(LOG_MESSAGE_LEVEL level, std::wstringstream& stream);
};
