#include "standins/wmi_kit/firmware_events.h"

#include <algorithm>

#include "standins/common/state_lock.h"

namespace standins {

bool FirmwareEvents::Subscribe(Subscriber subscriber, VrSDK::BiosEventCallback callback) {
    const ExclusiveLock exclusive(lock);
    if (IsSubscribed(subscriber)) {
        return false;
    }
    *subscriber = callback;
    subscribers.push_back(subscriber);
    return true;
}

bool FirmwareEvents::Unsubscribe(Subscriber subscriber) {
    const ExclusiveLock exclusive(lock);
    if (!exclusive.IsHeld()) {
        return false;
    }
    const bool wasSubscribed = IsSubscribed(subscriber);
    *subscriber = nullptr;
    subscribers.erase(std::remove(subscribers.begin(), subscribers.end(), subscriber),
                      subscribers.end());
    // A delivery whose thread the ending process terminated stays listed for ever.
    while (!ProcessIsEnding() && MustWaitFor(subscriber)) {
        SleepConditionVariableSRW(&deliveryEnded, &lock, INFINITE, /*Flags=*/0);
    }
    return wasSubscribed;
}

int FirmwareEvents::Deliver(unsigned int code) {
    /// Ends it also when an exception leaves the callback.
    struct ScopedDelivery {
        FirmwareEvents& events;
        const Subscriber subscriber;
        ~ScopedDelivery() { events.EndDelivery(subscriber); }
    };
    int delivered = 0;
    for (const Subscriber subscriber : SubscribersNow()) {
        const VrSDK::BiosEventCallback callback = BeginDelivery(subscriber);
        if (callback != nullptr) {
            const ScopedDelivery delivery{*this, subscriber};
            callback(code);
            ++delivered;
        }
    }
    return delivered;
}

std::vector<FirmwareEvents::Subscriber> FirmwareEvents::SubscribersNow() {
    const SharedLock shared(lock);
    return subscribers;
}

/// Null when the subscriber has gone meanwhile, say during the delivery to the one before it.
VrSDK::BiosEventCallback FirmwareEvents::BeginDelivery(Subscriber subscriber) {
    const ExclusiveLock exclusive(lock);
    if (!IsSubscribed(subscriber)) {
        return nullptr;
    }
    deliveries.push_back({subscriber, GetCurrentThreadId()});
    return *subscriber;
}

void FirmwareEvents::EndDelivery(Subscriber subscriber) {
    const ExclusiveLock exclusive(lock);
    const DWORD thread = GetCurrentThreadId();
    // One entry only: a subscriber that fires events itself nests deliveries on one thread.
    deliveries.erase(
        std::find_if(deliveries.begin(), deliveries.end(), [&](const Delivery& delivery) {
            return delivery.subscriber == subscriber && delivery.thread == thread;
        }));
    WakeAllConditionVariable(&deliveryEnded);
}

bool FirmwareEvents::IsSubscribed(Subscriber subscriber) const {
    return std::find(subscribers.begin(), subscribers.end(), subscriber) != subscribers.end();
}

bool FirmwareEvents::MustWaitFor(Subscriber subscriber) const {
    const DWORD thread = GetCurrentThreadId();
    bool isDelivering = false;
    for (const Delivery& delivery : deliveries) {
        if (delivery.thread == thread) {
            return false;
        }
        isDelivering = isDelivering || delivery.subscriber == subscriber;
    }
    return isDelivering;
}

}  // namespace standins
