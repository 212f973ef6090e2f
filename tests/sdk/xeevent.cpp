// An event is its id and the keys that it got; reported events are told in one line each.
#include "platform/xeevent.h"

#include "record.h"

struct XeEvent::Content {
    int id;
    std::string text;
};

XeEvent::XeEvent(int eventId) : content(new Content{eventId, {}}) {}

XeEvent::~XeEvent() { delete content; }

XeEvent& XeEvent::operator=(const XeEvent& other) {
    *content = *other.content;
    return *this;
}

XeEvent& XeEvent::PutString(const std::string& key, const std::string& value) {
    content->text += " " + key + "=" + value.substr(0, 20);
    return *this;
}

/// The one friend of XeEvent.
void XeView::Report(XeEvent& event) {
    Record("other xeevent", std::to_string(event.content->id) + event.content->text);
}
