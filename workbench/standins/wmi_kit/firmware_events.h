// Who subscribed to firmware events, and the deliveries under way.
//
// A delivery runs on the thread that fires the event, without a lock, so that several can run at
// once and a subscriber may call the library. Each is listed while it runs; whoever unsubscribes
// waits until none for that subscriber is listed any more. A thread that unsubscribes from within a
// delivery does not wait: it would wait for itself.
#pragma once

#include <windows.h>

#include <vector>

#include "platform/wmi_kit.h"

namespace standins {

class FirmwareEvents {
public:
    /// Where a monitor keeps its callback; null while it is not subscribed. Guarded by the lock of
    /// this class.
    using Subscriber = VrSDK::BiosEventCallback*;

    /// False when the monitor is subscribed already.
    bool Subscribe(Subscriber subscriber, VrSDK::BiosEventCallback callback);

    /// False when the monitor is not subscribed. Waits for its deliveries either way.
    bool Unsubscribe(Subscriber subscriber);

    /// Calls each subscriber on the calling thread; returns how many there were.
    int Deliver(unsigned int code);

private:
    struct Delivery {
        Subscriber subscriber;
        DWORD thread;
    };

    std::vector<Subscriber> SubscribersNow();
    VrSDK::BiosEventCallback BeginDelivery(Subscriber subscriber);
    void EndDelivery(Subscriber subscriber);

    // These expect the lock to be held.
    bool IsSubscribed(Subscriber subscriber) const;
    bool MustWaitFor(Subscriber subscriber) const;

    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE deliveryEnded = CONDITION_VARIABLE_INIT;
    std::vector<Subscriber> subscribers;
    std::vector<Delivery> deliveries;
};

}  // namespace standins
