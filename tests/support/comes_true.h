// Waiting for what another thread or process does.
#pragma once

#include <windows.h>

#include <chrono>

namespace test_support {

/// How long tests wait for what has to come. A net below what hangs and nothing else: however busy
/// the machine is, it is not over before. On a fast clock a test needs a longer one.
inline constexpr std::chrono::milliseconds kPatience = std::chrono::minutes(1);

/// For what is patient itself: a child process in which one thing after the other is waited for.
inline constexpr std::chrono::milliseconds kPatienceWithChildren = 3 * kPatience;

/// Asks again and again; false when the condition has not come true within `limit`. The time is the
/// system's own: simulated clocks do not move it.
template <class Condition>
bool ComesTrue(Condition condition, std::chrono::milliseconds limit = kPatience) {
    const ULONGLONG begin = GetTickCount64();
    while (!condition()) {
        if (GetTickCount64() - begin > static_cast<ULONGLONG>(limit.count())) {
            return false;
        }
        Sleep(1);
    }
    return true;
}

/// False when the object is not signalled within kPatience.
inline bool WaitForSignal(HANDLE object) {
    return WaitForSingleObject(object, static_cast<DWORD>(kPatience.count())) == WAIT_OBJECT_0;
}

}  // namespace test_support
