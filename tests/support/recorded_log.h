// The log lines that reach LogKit.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "simulation/slim_mutex.h"
#include "support/timeline.h"

namespace test_support {

struct LogLine {
    int level;
    std::wstring text;
    DWORD threadId;
};

/// While it lives, log lines come here instead of to the console. One at a time in a process.
class RecordedLog {
public:
    /// Each line is noted in `timeline` as "log 3 text".
    explicit RecordedLog(Timeline& timeline);
    ~RecordedLog();
    RecordedLog(const RecordedLog&) = delete;
    RecordedLog& operator=(const RecordedLog&) = delete;

    std::vector<LogLine> Lines() const;

    /// Called after each line on the thread that logs, which waits for it. Set before use.
    std::function<void(const LogLine&)> onLine;

private:
    static void Receive(void* context, int level, const wchar_t* text);

    Timeline& timeline;
    mutable simulation::SlimMutex mutex;
    std::vector<LogLine> lines;
};

}  // namespace test_support
