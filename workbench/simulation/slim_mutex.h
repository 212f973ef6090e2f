// What the threads of a simulated machine meet at.
#pragma once

#include <windows.h>

namespace simulation {

/// An exclusive lock for std::lock_guard and std::unique_lock, as std::mutex is. It holds nothing
/// of the system: mingw-w64's mutex keeps a handle once two threads met at it, and a machine that
/// is simulated in a test for leaks must leave none.
class SlimMutex {
public:
    SlimMutex() = default;
    SlimMutex(const SlimMutex&) = delete;
    SlimMutex& operator=(const SlimMutex&) = delete;

    void lock() { AcquireSRWLockExclusive(&state); }
    void unlock() { ReleaseSRWLockExclusive(&state); }

private:
    SRWLOCK state = SRWLOCK_INIT;
};

}  // namespace simulation
