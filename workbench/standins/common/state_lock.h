// Locks for the state that a library shares between threads.
//
// When a process ends, the system first terminates all threads but one, wherever they are, and then
// runs what the libraries do on unload. A thread that dies inside a locked section leaves its lock
// behind, and waiting for it would keep the process from ending. The locks below therefore only try
// once that stage is reached; whoever finds IsHeld false leaves the state alone.
#pragma once

#include <windows.h>

namespace standins {

/// True once the process is ending and the calling thread is the only one left.
bool ProcessIsEnding();

/// Holds a lock for the lifetime of this object.
class StateLock {
public:
    StateLock(SRWLOCK& lock, bool shared);
    ~StateLock();
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;

    /// False only in a process that is ending.
    bool IsHeld() const { return held_; }

private:
    SRWLOCK& lock_;
    const bool shared_;
    bool held_ = true;
};

/// Holds the lock alone.
struct ExclusiveLock : StateLock {
    explicit ExclusiveLock(SRWLOCK& lock) : StateLock(lock, /*shared=*/false) {}
};

/// Holds the lock together with other readers.
struct SharedLock : StateLock {
    explicit SharedLock(SRWLOCK& lock) : StateLock(lock, /*shared=*/true) {}
};

}  // namespace standins
