#include "host/run/run_observer.h"

#include "common/text.h"
#include "host/views/device_list_view.h"
#include "host/views/event_view.h"

namespace host {

using workbench::Plural;
using workbench::TextLines;
using workbench::ToUtf8;

namespace {

/// What the plug-in logs before it sends a device list.
constexpr std::wstring_view kListBegins = L"Peripheral list(";

/// Milliseconds since 1970, UTC.
std::int64_t UtcNow() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

std::vector<std::string> TextsOf(const records::SentEvent& event) {
    std::vector<std::string> texts{std::to_string(event.id)};
    for (const records::SentField& field : event.fields) {
        texts.push_back(field.key);
        texts.push_back(field.value);
    }
    return texts;
}

}  // namespace

RunObserver::RunObserver(const Suite& theSuite, const RunClock& theClock, Screen& theScreen,
                         bool foldsRepeats)
    : suite(theSuite), clock(theClock), screen(theScreen), foldRepeats(foldsRepeats) {
    suite.setLogConsole(0);
    suite.setLogSink(
        [](void* context, int level, const wchar_t* text) {
            static_cast<RunObserver*>(context)->Add(level, text);
        },
        this);
    suite.setEventSink(&RunObserver::OnEvent, this);
    suite.setEventWarningSink(
        [](void* context, const char* text) {
            static_cast<RunObserver*>(context)->screen.Line(LineKind::Warning, text);
        },
        this);
}

RunObserver::~RunObserver() {
    suite.setLogSink(nullptr, nullptr);
    suite.setEventSink(nullptr, nullptr);
    suite.setEventWarningSink(nullptr, nullptr);
}

void RunObserver::OnEvent(void* context, int eventId, const XeEventField* fields,
                          size_t fieldCount) {
    records::SentEvent event{eventId, {}};
    for (size_t i = 0; i < fieldCount; ++i) {
        event.fields.push_back({std::string(fields[i].key, fields[i].keyLength),
                                std::string(fields[i].value, fields[i].valueLength)});
    }
    static_cast<RunObserver*>(context)->Add(event);
}

void RunObserver::Add(int level, const std::wstring& line) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (record != nullptr) {
            record->lines.push_back({UtcNow(), level, ToUtf8(line)});
        }
        if (schedule.OnLogLine(line, Now())) {
            lastTimerLine = std::chrono::steady_clock::now();
        }
        if (line.compare(0, kListBegins.size(), kListBegins) == 0) {
            deviceLists.Begin(Now());
        }
        if (foldRepeats && (TickSchedule::IsWaitLine(line) || !linesShown.insert(line).second)) {
            ++linesFolded;
            return;
        }
    }
    screen.Line(level >= LOG_LEVEL_ERROR ? LineKind::LogError : LineKind::Log, ToUtf8(line));
}

void RunObserver::Add(const records::SentEvent& event) {
    std::int64_t timerHour = 0;
    bool isRepeat = false;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (record != nullptr) {
            record->events.push_back({UtcNow(), event});
        }
        timerHour = schedule.HoursPassed(Now());
        summary.Add(event, Now());
        deviceLists.Add(event);
        isRepeat = foldRepeats && !eventsShown.insert(TextsOf(event)).second;
    }
    screen.Line(LineKind::Event,
                std::to_string(event.id) + " " + records::EventName(event.id) + ", " +
                    std::to_string(records::EventBytes(event)) + " bytes, timer hour " +
                    std::to_string(timerHour) + (isRepeat ? ", the same as before" : ""),
                isRepeat ? TextLines() : DescribeEvent(event));
}

void RunObserver::KeepRecord(records::RunRecord& target) {
    const std::lock_guard<std::mutex> lock(mutex);
    record = &target;
}

std::string RunObserver::Status() {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto next = schedule.NextRun();
    std::string text = next ? "the timer runs next at " + *next : "no timer runs";
    if (const std::size_t count = linesFolded - linesFoldedBeforeStatus; count != 0) {
        text += "; " + Plural(count, "log line") + " not shown";
    }
    linesShown.clear();
    linesFoldedBeforeStatus = linesFolded;
    return text;
}

std::size_t RunObserver::LinesNotShown() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return linesFolded;
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

TextLines RunObserver::Summary(int listsBefore) const {
    const std::lock_guard<std::mutex> lock(mutex);
    TextLines lines = deviceLists.Describe(listsBefore + 1);
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
