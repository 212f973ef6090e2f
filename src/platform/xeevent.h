// xeevent.dll: the suite's event reporting.
#pragma once

#include <cstdint>
#include <string>

#if defined(XEEVENT_EXPORTS)
#define XEEVENT_API __declspec(dllexport)
#else
#define XEEVENT_API __declspec(dllimport)
#endif

// The limits are data that every module using the library exports itself.
#define XEEVENT_LIMIT_API __declspec(dllexport)

/// One named event: an id and string pairs in the order in which they were put.
class XeEvent {
public:
    XEEVENT_LIMIT_API static const std::uint64_t MAX_KEY_LEN = 32;
    XEEVENT_LIMIT_API static const std::uint64_t MAX_PAIR_NUM = 256;
    XEEVENT_LIMIT_API static const std::uint64_t MAX_PATH_LEN = 256;
    XEEVENT_LIMIT_API static const std::uint64_t MAX_VALUE_LEN = 1024;
    XEEVENT_LIMIT_API static const std::uint64_t MAX_FILE_NUM = 10;
    XEEVENT_LIMIT_API static const std::uint64_t MAX_ARR_SIZE = 100;
    XEEVENT_LIMIT_API static const std::int32_t INVALID_NUM = -1;

    XEEVENT_API explicit XeEvent(int eventId);
    XEEVENT_API virtual ~XeEvent();
    XEEVENT_API XeEvent& operator=(const XeEvent& other);
    XeEvent(const XeEvent&) = delete;

    /// Appends a pair and returns this event, so that calls can be chained.
    XEEVENT_API XeEvent& PutString(const std::string& key, const std::string& value);

private:
    friend class XeView;
    struct Content;
    Content* content;
};

/// Hands events to the suite's reporting service. Safe to call from any thread.
class XeView {
public:
    /// Fire and forget: the caller never learns whether the event was delivered.
    XEEVENT_API static void Report(XeEvent& event);
};
