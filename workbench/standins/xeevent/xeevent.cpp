#include "platform/xeevent.h"

#include <windows.h>

#include "common/text.h"
#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"
#include "standins/common/text_output.h"
#include "standins/xeevent/event_content.h"
#include "standins/xeevent/xeevent_control.h"

namespace {

using standins::ExclusiveLock;

struct State {
    /// Held while an event is delivered, so that record and sink get the events in the same order.
    SRWLOCK lock = SRWLOCK_INIT;
    standins::LineFile record;
    standins::CallbackSlot<XeEventSink> sink;
    standins::CallbackSlot<XeEventWarningSink> warningSink;
};

State state;

void Warn(const std::string& text) {
    if (!state.warningSink.Call(text.c_str())) {
        standins::WriteStandardLine(STD_ERROR_HANDLE, L"xeevent: " + workbench::ToWide(text));
    }
}

}  // namespace

XeEvent::XeEvent(int eventId) : content(new Content{eventId, {}}) {}

XeEvent::~XeEvent() { delete content; }

XeEvent& XeEvent::operator=(const XeEvent& other) {
    if (this != &other) {
        *content = *other.content;
    }
    return *this;
}

XeEvent& XeEvent::PutString(const std::string& key, const std::string& value) {
    content->fields.emplace_back(key, value);
    return *this;
}

void XeView::Report(XeEvent& event) {
    const int id = event.content->id;
    const standins::EventFields& fields = event.content->fields;
    std::vector<XeEventField> views;
    for (const auto& [key, value] : fields) {
        views.push_back({key.data(), key.size(), value.data(), value.size()});
    }

    const ExclusiveLock exclusive(state.lock);
    if (!exclusive.IsHeld()) {
        return;
    }
    for (const std::string& sentence : standins::ExceededLimits(id, fields)) {
        Warn(sentence);
    }
    if (state.record.IsOpen()) {
        state.record.Write(standins::EventRecord(id, fields));
    }
    state.sink.Call(id, views.data(), views.size());
}

void XeEvent_SetSink(XeEventSink sink, void* context) { state.sink.Set(sink, context); }

int XeEvent_OpenRecord(const wchar_t* path) {
    const ExclusiveLock exclusive(state.lock);
    return static_cast<int>(state.record.Open(path));
}

void XeEvent_CloseRecord() {
    const ExclusiveLock exclusive(state.lock);
    state.record.Close();
}

void XeEvent_SetWarningSink(XeEventWarningSink sink, void* context) {
    state.warningSink.Set(sink, context);
}

void XeEvent_Reset() {
    XeEvent_SetSink(nullptr, nullptr);
    XeEvent_CloseRecord();
    XeEvent_SetWarningSink(nullptr, nullptr);
}
