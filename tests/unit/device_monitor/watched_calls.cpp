#include "unit/device_monitor/watched_calls.h"

#include <dbt.h>

namespace device_monitor_test {
namespace {

WatchedCalls* current = nullptr;
decltype(::TranslateMessage)* realTranslateMessage = nullptr;
decltype(::DispatchMessageW)* realDispatchMessageW = nullptr;
decltype(::RegisterDeviceNotificationW)* realRegisterDeviceNotificationW = nullptr;

BOOL WINAPI WatchedTranslateMessage(const MSG* message) {
    current->translated.push_back(*message);
    return realTranslateMessage(message);
}

LRESULT WINAPI WatchedDispatchMessageW(const MSG* message) {
    current->dispatched.push_back(*message);
    return realDispatchMessageW(message);
}

HDEVNOTIFY WINAPI WatchedRegisterDeviceNotificationW(HANDLE recipient, void* filter, DWORD flags) {
    const auto* const begin = static_cast<const BYTE*>(filter);
    const DWORD size = static_cast<const DEV_BROADCAST_HDR*>(filter)->dbch_size;
    current->filters.emplace_back(begin, begin + size);
    return realRegisterDeviceNotificationW(recipient, filter, flags);
}

}  // namespace

WatchedCalls::WatchedCalls() : redirection(GetModuleHandleW(nullptr)) {
    current = this;
    realTranslateMessage = redirection.Redirect<decltype(::TranslateMessage)>(
        "TranslateMessage", WatchedTranslateMessage);
    realDispatchMessageW = redirection.Redirect<decltype(::DispatchMessageW)>(
        "DispatchMessageW", WatchedDispatchMessageW);
    realRegisterDeviceNotificationW = redirection.Redirect<decltype(::RegisterDeviceNotificationW)>(
        "RegisterDeviceNotificationW", WatchedRegisterDeviceNotificationW);
}

WatchedCalls::~WatchedCalls() { current = nullptr; }

}  // namespace device_monitor_test
