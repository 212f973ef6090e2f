// What a host or a test sets on xeevent.dll. The plug-in never sees it. Every function may be
// called from any thread.
#pragma once

#include <cstddef>

#include "platform/xeevent.h"

extern "C" {

/// One pair of an event, with the very bytes that were put. Both texts are followed by a zero byte;
/// the lengths count up to it and reveal zero bytes inside.
typedef struct XeEventField {
    const char* key;
    size_t keyLength;
    const char* value;
    size_t valueLength;
} XeEventField;

/// Receives each reported event, on the thread that reports it, one event at a time. The fields
/// live during the call only. It must not call xeevent.
typedef void (*XeEventSink)(void* context, int eventId, const XeEventField* fields,
                            size_t fieldCount);

/// Receives, in UTF-8, what is wrong with an event. It must not call xeevent.
typedef void (*XeEventWarningSink)(void* context, const char* text);

/// Null removes it. After the return the previous one is not called any more.
XEEVENT_API void XeEvent_SetSink(XeEventSink sink, void* context);

/// From now on appends each event to the file as one line of JSON, and closes the previous file:
/// {"time":"2026-11-20T18:54:03.120Z","id":992614500,"fields":[{"key":"Product","value":"X1"}]}
/// The time is UTC. The fields are an array, so that order and repeated keys stay visible. A text
/// that is valid UTF-8 is recorded as that, any other as text in the ANSI code page.
/// Returns 0, or the Win32 error code, and then keeps the previous file.
XEEVENT_API int XeEvent_OpenRecord(const wchar_t* path);
XEEVENT_API void XeEvent_CloseRecord(void);

/// Where warnings go; null means standard error, which is the default. An event that exceeds a
/// limit of XeEvent (key length, value length, number of pairs) is delivered all the same.
XEEVENT_API void XeEvent_SetWarningSink(XeEventWarningSink sink, void* context);

/// Back to the defaults: no sink, no record, warnings to standard error.
XEEVENT_API void XeEvent_Reset(void);

}  // extern "C"
