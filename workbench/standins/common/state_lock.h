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

/// Holds the lock alone, for the lifetime of this object.
class ExclusiveLock {
public:
    explicit ExclusiveLock(SRWLOCK& lock);
    ~ExclusiveLock();
    ExclusiveLock(const ExclusiveLock&) = delete;
    ExclusiveLock& operator=(const ExclusiveLock&) = delete;

    /// False only in a process that is ending.
    bool IsHeld() const { return held; }

private:
    SRWLOCK& lock;
    bool held = true;
};

/// Holds the lock together with other readers, for the lifetime of this object.
class SharedLock {
public:
    explicit SharedLock(SRWLOCK& lock);
    ~SharedLock();
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

    /// False only in a process that is ending.
    bool IsHeld() const { return held; }

private:
    SRWLOCK& lock;
    bool held = true;
};

}  // namespace standins
