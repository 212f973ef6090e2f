// Listens to everything that the plug-in says.
#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/machine_time.h"
#include "host/run/suite.h"
#include "host/run/tick_schedule.h"
#include "host/views/device_list_view.h"
#include "host/views/event_view.h"
#include "host/views/screen.h"
#include "records/record.h"

namespace host {

/// While it lives, log lines, events and warnings of the suite's libraries go to the screen, and it
/// remembers what the summary needs. Safe to use from any thread.
class RunObserver {
public:
    /// With `foldsRepeats`, a log line that was shown already since the last status is only
    /// counted, as is each line that begins a wait of the timer; the fields of an event that was
    /// shown already are not shown again.
    RunObserver(const Suite& theSuite, const RunClock& theClock, Screen& theScreen,
                bool foldsRepeats);
    ~RunObserver();
    RunObserver(const RunObserver&) = delete;
    RunObserver& operator=(const RunObserver&) = delete;

    /// From now on also keeps every event and log line in `target`, which must outlive this object.
    void KeepRecord(records::RunRecord& target);

    /// When the plug-in runs next and how many log lines were not shown since the last call.
    std::string Status();

    /// How many log lines were not shown at all.
    std::size_t LinesNotShown() const;

    /// Whether the plug-in registered the hourly report, for which it starts its device monitor.
    bool HasHourlyReport() const;
    /// How long ago the plug-in registered a timer or its timer's thread began a wait.
    std::chrono::milliseconds SinceTimerLine() const;

    /// The plug-in was stopped.
    void OnStopped();

    /// What the run sent. `listsBefore` device lists were sent before it.
    workbench::TextLines Summary(int listsBefore) const;

private:
    static void OnEvent(void* context, int eventId, const XeEventField* fields, size_t fieldCount);

    void Add(int level, const std::wstring& line);
    void Add(const records::SentEvent& event);
    /// Zero before the plug-in's first Start.
    std::chrono::seconds Now() const;

    const Suite& suite;
    const RunClock& clock;
    Screen& screen;
    const bool foldRepeats;

    mutable std::mutex mutex;
    TickSchedule schedule;
    std::chrono::steady_clock::time_point lastTimerLine{};
    EventSummary summary;
    DeviceLists deviceLists;
    std::set<std::wstring> linesShown;  ///< Since the last status.
    std::size_t linesFolded = 0;
    std::size_t linesFoldedBeforeStatus = 0;
    records::RunRecord* record = nullptr;            ///< Null while none is kept.
    std::set<std::vector<std::string>> eventsShown;  ///< Id, keys and values of each.
};

}  // namespace host
