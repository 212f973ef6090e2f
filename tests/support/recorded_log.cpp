#include "support/recorded_log.h"

#include <mutex>

#include "simulation/call_text.h"
#include "standins/log_kit/log_kit_control.h"

namespace test_support {

RecordedLog::RecordedLog(Timeline& timelineOfTest) : timeline(timelineOfTest) {
    LogKit_SetConsole(0);
    LogKit_SetSink(&Receive, this);
}

RecordedLog::~RecordedLog() { LogKit_Reset(); }

std::vector<LogLine> RecordedLog::Lines() const {
    const std::lock_guard lock(mutex);
    return lines;
}

void RecordedLog::Receive(void* context, int level, const wchar_t* text) {
    RecordedLog& log = *static_cast<RecordedLog*>(context);
    const LogLine line{level, text, GetCurrentThreadId()};
    {
        const std::lock_guard lock(log.mutex);
        log.lines.push_back(line);
    }
    log.timeline.Note("log " + std::to_string(level) + " " + simulation::ToUtf8(text));
    if (log.onLine) {
        log.onLine(line);
    }
}

}  // namespace test_support
