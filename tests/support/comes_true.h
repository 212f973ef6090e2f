// Waiting for what another thread does.
#pragma once

#include <windows.h>

#include <chrono>

namespace test_support {

/// Asks again and again; false when the condition has not come true within `limit`. The time is the
/// system's own: simulated clocks do not move it.
template <class Condition>
bool ComesTrue(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    const ULONGLONG begin = GetTickCount64();
    while (!condition()) {
        if (GetTickCount64() - begin > static_cast<ULONGLONG>(limit.count())) {
            return false;
        }
        Sleep(1);
    }
    return true;
}

}  // namespace test_support
