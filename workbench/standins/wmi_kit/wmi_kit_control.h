// What a host or a test sets on WmiKit.dll. The plug-in never sees it. Every function may be called
// from any thread.
#pragma once

#include <cstddef>

#include "platform/wmi_kit.h"

extern "C" {

/// A request to the firmware as the library received it.
typedef struct WmiKitRequest {
    unsigned short commandWord;
    unsigned char subCommand;
    unsigned char bytes[64];  ///< The whole record, the two fields above included.
} WmiKitRequest;

/// Learns of each call into the library before it is answered, on the calling thread, possibly on
/// several at once. `operation` is "GetBiosInfo", with `bytes` pointing to a WmiKitRequest of
/// `length` bytes, or "StartEventMonitor" or "StopEventMonitor", with null and 0. The destructor of
/// a monitor is not a call. It must not call WmiKit.
typedef void (*WmiKitObserver)(void* context, const char* operation, const void* bytes,
                               size_t length);

/// How GetBiosInfo answers from now on, whatever is asked: its result, and what it stores in the
/// output record. `length` bytes, at most 253, go to the record's data; the others stay as the
/// caller left them. The default is success with an EC log of 16 bytes.
WMI_KIT_API void WmiKit_SetAnswer(int result, unsigned char status, unsigned char dataSize,
                                  const unsigned char* data, size_t length);

/// What StartEventMonitor returns from now on. Any value but 0, the default, subscribes nobody.
WMI_KIT_API void WmiKit_SetStartResult(int result);

/// Delivers a firmware event to the subscribers on the calling thread and returns when they are
/// done. Returns 1 if there was a subscriber, else 0. Several threads may fire at once.
/// StopEventMonitor waits for deliveries under way, unless it is called from within one.
WMI_KIT_API int WmiKit_FireFirmwareEvent(unsigned int code);

/// Null removes it. After the return the previous one is not called any more.
WMI_KIT_API void WmiKit_SetObserver(WmiKitObserver observer, void* context);

/// Back to the defaults for answer, start result and observer. Subscriptions stay.
WMI_KIT_API void WmiKit_Reset(void);

}  // extern "C"
