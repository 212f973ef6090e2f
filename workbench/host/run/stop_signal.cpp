#include "host/run/stop_signal.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>

#include "host/host_error.h"
#include "util/scoped_handle.h"

namespace host {
namespace {

/// The handler runs on a thread of the system's and has no argument to reach an object by.
ScopedKernelHandle stopRequested;
ScopedKernelHandle stopped;

BOOL WINAPI OnControlEvent(DWORD type) {
    SetEvent(stopRequested.Get());
    if (type == CTRL_CLOSE_EVENT) {
        // The process ends when this returns.
        WaitForSingleObject(stopped.Get(), INFINITE);
    }
    return TRUE;
}

}  // namespace

StopSignal::StopSignal() {
    stopRequested.Reset(CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr));
    stopped.Reset(CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr));
    if (!stopRequested || !stopped || !SetConsoleCtrlHandler(OnControlEvent, TRUE)) {
        throw RunFailed("cannot watch for Ctrl-C: " + Win32ErrorText(GetLastError()) +
                        "; start the host from a console");
    }
}

StopSignal::~StopSignal() {
    SetEvent(stopped.Get());
    SetConsoleCtrlHandler(OnControlEvent, FALSE);
}

bool StopSignal::WaitFor(std::chrono::milliseconds time) const {
    // One wait is at most 49 days long.
    constexpr std::int64_t kLongest = INFINITE - 1;
    const auto timeout = static_cast<DWORD>(std::min<std::int64_t>(time.count(), kLongest));
    return WaitForSingleObject(stopRequested.Get(), timeout) == WAIT_OBJECT_0;
}

}  // namespace host
