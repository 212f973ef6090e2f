#include "support/recorded_events.h"

#include <mutex>

namespace test_support {

RecordedEvents::RecordedEvents(Timeline& timelineOfTest) : timeline(timelineOfTest) {
    XeEvent_SetSink(&Receive, this);
    XeEvent_SetWarningSink(&ReceiveWarning, this);
}

RecordedEvents::~RecordedEvents() { XeEvent_Reset(); }

std::vector<Event> RecordedEvents::All() const {
    const std::lock_guard lock(mutex);
    return events;
}

std::vector<Event> RecordedEvents::WithId(int id) const {
    std::vector<Event> result;
    for (Event& event : All()) {
        if (event.id == id) {
            result.push_back(std::move(event));
        }
    }
    return result;
}

std::vector<std::string> RecordedEvents::Warnings() const {
    const std::lock_guard lock(mutex);
    return warnings;
}

void RecordedEvents::Receive(void* context, int id, const XeEventField* fields, std::size_t count) {
    RecordedEvents& recorded = *static_cast<RecordedEvents*>(context);
    Event event{id, {}, GetCurrentThreadId(), std::chrono::system_clock::now()};
    for (std::size_t i = 0; i < count; ++i) {
        event.fields.emplace_back(std::string(fields[i].key, fields[i].keyLength),
                                  std::string(fields[i].value, fields[i].valueLength));
    }
    {
        const std::lock_guard lock(recorded.mutex);
        recorded.events.push_back(event);
    }
    recorded.timeline.Note("event " + std::to_string(id));
    if (recorded.onEvent) {
        recorded.onEvent(event);
    }
}

void RecordedEvents::ReceiveWarning(void* context, const char* text) {
    RecordedEvents& recorded = *static_cast<RecordedEvents*>(context);
    const std::lock_guard lock(recorded.mutex);
    recorded.warnings.emplace_back(text);
}

}  // namespace test_support
