#include "report/report_event.h"

#include "platform/xeevent.h"

void SendEvent(std::int32_t eventId, const std::vector<EventField>& fields) {
    XeEvent event(eventId);
    for (const EventField& field : fields) {
        event.PutString(field.key, field.value);
    }
    XeView::Report(event);
}
