// Ctrl-C as something to wait for.
#pragma once

#include <chrono>

namespace host {

/// From its construction on, Ctrl-C and Ctrl-Break no longer end the process but end the waits of
/// this object, so that the run can be taken down in order. One per process.
class StopSignal {
public:
    /// Throws RunFailed when the system refuses the handler.
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Waits for the signal, at most this long; true when it came, now or before.
    bool WaitFor(std::chrono::milliseconds time) const;
};

}  // namespace host
