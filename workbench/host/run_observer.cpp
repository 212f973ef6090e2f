#include "host/run_observer.h"

#include "host/event_view.h"
#include "standins/common/text.h"

namespace host {
namespace {

/// What the plug-in logs before it sends a device list.
constexpr std::wstring_view kListBegins = L"Peripheral list(";

}  // namespace

RunObserver::RunObserver(const Suite& theSuite, const RunClock& theClock, Screen& theScreen,
                         bool foldsRepeats)
    : suite(theSuite), clock(theClock), screen(theScreen), foldRepeats(foldsRepeats) {
    suite.setLogConsole(0);
    suite.setLogSink(&RunObserver::OnLogLine, this);
    suite.setEventSink(&RunObserver::OnEvent, this);
    suite.setEventWarningSink(&RunObserver::OnWarning, this);
}

RunObserver::~RunObserver() {
    suite.setLogSink(nullptr, nullptr);
    suite.setEventSink(nullptr, nullptr);
    suite.setEventWarningSink(nullptr, nullptr);
}

void RunObserver::OnLogLine(void* context, int level, const wchar_t* text) {
    static_cast<RunObserver*>(context)->Add(level, text);
}

void RunObserver::OnEvent(void* context, int eventId, const XeEventField* fields,
                          size_t fieldCount) {
    SentEvent event{eventId, {}};
    for (size_t i = 0; i < fieldCount; ++i) {
        event.fields.push_back({std::string(fields[i].key, fields[i].keyLength),
                                std::string(fields[i].value, fields[i].valueLength)});
    }
    static_cast<RunObserver*>(context)->Add(event);
}

void RunObserver::OnWarning(void* context, const char* text) {
    static_cast<RunObserver*>(context)->screen.Line(LineKind::Warning, text);
}

void RunObserver::Add(int level, const std::wstring& line) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (schedule.OnLogLine(line, Now())) {
            lastTimerLine = std::chrono::steady_clock::now();
        }
        if (line.compare(0, kListBegins.size(), kListBegins) == 0) {
            deviceLists.Begin(Now());
        }
        if (foldRepeats && !linesShown.insert(line).second) {
            ++linesFolded;
            return;
        }
    }
    screen.Line(level >= LOG_LEVEL_ERROR ? LineKind::LogError : LineKind::Log,
                standins::ToUtf8(line));
}

void RunObserver::Add(const SentEvent& event) {
    std::int64_t timerHour = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        timerHour = schedule.HoursPassed(Now());
        summary.Add(event, Now());
        deviceLists.Add(event);
    }
    screen.Line(LineKind::Event,
                std::to_string(event.id) + " " + EventName(event.id) + ", " +
                    std::to_string(EventBytes(event)) + " bytes, timer hour " +
                    std::to_string(timerHour),
                DescribeEvent(event));
}

std::string RunObserver::Status() {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto next = schedule.NextRun();
    std::string text = next ? "the timer runs next at " + *next : "no timer runs";
    if (linesFolded != 0) {
        text += "; " + std::to_string(linesFolded) + " repeated log lines not shown";
    }
    linesShown.clear();
    linesFolded = 0;
    return text;
}

bool RunObserver::HasHourlyReport() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return schedule.Contains(1);
}

std::chrono::milliseconds RunObserver::SinceTimerLine() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 lastTimerLine);
}

void RunObserver::OnStopped() {
    const std::lock_guard<std::mutex> lock(mutex);
    schedule.Clear();
}

TextLines RunObserver::Summary() const {
    const std::lock_guard<std::mutex> lock(mutex);
    TextLines lines = deviceLists.Describe();
    if (!lines.empty()) {
        lines.emplace_back();
    }
    const TextLines table = summary.Describe();
    lines.insert(lines.end(), table.begin(), table.end());
    return lines;
}

std::chrono::seconds RunObserver::Now() const {
    return clock.Elapsed().value_or(std::chrono::seconds::zero());
}

}  // namespace host
