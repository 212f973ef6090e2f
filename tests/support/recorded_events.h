// The events that reach xeevent.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "simulation/slim_mutex.h"
#include "standins/xeevent/xeevent_control.h"
#include "support/timeline.h"

namespace test_support {

using EventFields = std::vector<std::pair<std::string, std::string>>;

struct Event {
    int id;
    EventFields fields;
    DWORD threadId;
    std::chrono::system_clock::time_point time;
};

/// While it lives, it receives each event. One at a time in a process.
class RecordedEvents {
public:
    /// Each event is noted in `timeline` as "event 992614500".
    explicit RecordedEvents(Timeline& timeline);
    ~RecordedEvents();
    RecordedEvents(const RecordedEvents&) = delete;
    RecordedEvents& operator=(const RecordedEvents&) = delete;

    std::vector<Event> All() const;
    std::vector<Event> WithId(int id) const;
    /// What the event service found wrong with the events.
    std::vector<std::string> Warnings() const;

    /// Called after each event on the thread that sends, which waits for it. Set before use.
    std::function<void(const Event&)> onEvent;

private:
    static void Receive(void* context, int id, const XeEventField* fields, std::size_t count);
    static void ReceiveWarning(void* context, const char* text);

    Timeline& timeline;
    mutable simulation::SlimMutex mutex;
    std::vector<Event> events;
    std::vector<std::string> warnings;
};

}  // namespace test_support
