// The place where a library keeps a callback that its host may replace at any time.
#pragma once

#include <utility>

#include "standins/common/state_lock.h"

namespace standins {

/// Holds a C function and its context. Calls may run on several threads at once; Set waits until
/// none is running, so that the previous context can be freed after it. A callback must not call
/// Set. `Callback` is a pointer to a function whose first parameter is the context.
template <typename Callback>
class CallbackSlot {
public:
    /// Null empties the slot.
    void Set(Callback newCallback, void* newContext) {
        const ExclusiveLock exclusive(lock);
        callback = newCallback;
        context = newContext;
    }

    /// Calls `use(callback, context)` unless the slot is empty; tells whether it did.
    template <typename Use>
    bool With(Use&& use) {
        const SharedLock shared(lock);
        if (!shared.IsHeld() || callback == nullptr) {
            return false;
        }
        std::forward<Use>(use)(callback, context);
        return true;
    }

    /// Calls the callback with its context and the arguments unless the slot is empty; tells
    /// whether it did.
    template <typename... Arguments>
    bool Call(Arguments... arguments) {
        return With([&](Callback call, void* callContext) { call(callContext, arguments...); });
    }

private:
    SRWLOCK lock = SRWLOCK_INIT;
    Callback callback = nullptr;
    void* context = nullptr;
};

}  // namespace standins
