// Waiting for something that gives no sign.
#pragma once

#include <windows.h>

namespace host {

/// Looks again and again until `condition()` holds; false when it never does. The number of looks
/// is the limit, some twenty seconds as a rule: on a fast clock any span of time is over too soon.
template <typename Condition>
bool WaitPatiently(Condition condition) {
    constexpr int kLooks = 20000;
    for (int look = 0; look < kLooks; ++look) {
        if (condition()) {
            return true;
        }
        Sleep(1);
    }
    return false;
}

}  // namespace host
