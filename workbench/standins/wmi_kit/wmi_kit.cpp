#include "platform/wmi_kit.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <vector>

#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"
#include "standins/wmi_kit/firmware_events.h"
#include "standins/wmi_kit/wmi_kit_control.h"

static_assert(sizeof(VrSDK::WmiInputParams) == sizeof(WmiKitRequest::bytes));

namespace {

using standins::ExclusiveLock;

constexpr int kSuccess = 0;
constexpr int kRefused = -1;

/// How GetBiosInfo answers.
struct Answer {
    int result = kSuccess;
    std::uint8_t status = 0;
    std::uint8_t dataSize = 16;
    /// An EC log with a header, two records of event, hour and minute, and the end mark.
    std::vector<std::uint8_t> data = {0x45, 0x43, 0x01, 0x02, 0x11, 0x00, 0x08, 0x1e,
                                      0x24, 0x00, 0x11, 0x3b, 0x00, 0x00, 0x00, 0xff};
};

struct State {
    SRWLOCK lock = SRWLOCK_INIT;
    Answer answer;
    std::atomic<int> startResult{kSuccess};
    standins::CallbackSlot<WmiKitObserver> observer;
    standins::FirmwareEvents events;
};

// Never destroyed: at the end of the process, the threads that were terminated may have been busy
// with it.
State& state = *new State;

void Observe(const char* operation) {
    state.observer.Call(operation, static_cast<const void*>(nullptr), std::size_t{0});
}

void ObserveRequest(const VrSDK::WmiInputParams& input) {
    WmiKitRequest request = {};
    request.commandWord = input.commandWord;
    request.subCommand = input.subCommand;
    std::memcpy(request.bytes, &input, sizeof(request.bytes));
    state.observer.Call("GetBiosInfo", static_cast<const void*>(&request), sizeof(request));
}

Answer CurrentAnswer() {
    const ExclusiveLock exclusive(state.lock);
    return state.answer;
}

void SetAnswer(Answer answer) {
    const ExclusiveLock exclusive(state.lock);
    state.answer = std::move(answer);
}

}  // namespace

namespace VrSDK {

int BiosWmi::GetBiosInfo(WmiInputParams& input, WmiOutputParams& output) {
    ObserveRequest(input);
    const Answer answer = CurrentAnswer();
    output.status = answer.status;
    output.dataSize = answer.dataSize;
    std::copy(answer.data.begin(), answer.data.end(), output.data);
    return answer.result;
}

BiosEventMonitor::BiosEventMonitor() = default;

BiosEventMonitor::~BiosEventMonitor() { state.events.Unsubscribe(&subscriber); }

int BiosEventMonitor::StartEventMonitor(BiosEventCallback callback) {
    Observe("StartEventMonitor");
    if (const int result = state.startResult; result != kSuccess) {
        return result;
    }
    if (callback == nullptr || !state.events.Subscribe(&subscriber, callback)) {
        return kRefused;
    }
    return kSuccess;
}

int BiosEventMonitor::StopEventMonitor() {
    Observe("StopEventMonitor");
    return state.events.Unsubscribe(&subscriber) ? kSuccess : kRefused;
}

}  // namespace VrSDK

void WmiKit_SetAnswer(int result, unsigned char status, unsigned char dataSize,
                      const unsigned char* data, size_t length) {
    const size_t taken = std::min(length, sizeof(VrSDK::WmiOutputParams::data));
    SetAnswer({result, status, dataSize, std::vector<std::uint8_t>(data, data + taken)});
}

void WmiKit_SetStartResult(int result) { state.startResult = result; }

int WmiKit_FireFirmwareEvent(unsigned int code) { return state.events.Deliver(code) > 0 ? 1 : 0; }

void WmiKit_SetObserver(WmiKitObserver observer, void* context) {
    state.observer.Set(observer, context);
}

void WmiKit_Reset() {
    SetAnswer(Answer());
    WmiKit_SetStartResult(kSuccess);
    WmiKit_SetObserver(nullptr, nullptr);
}
