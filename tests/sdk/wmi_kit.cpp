// Firmware that raises the event of the embedded controller's log once, as soon as it is asked to.
#include "platform/wmi_kit.h"

#include <thread>

#include "record.h"

namespace {

constexpr unsigned int kECLogEventCode = 675;
std::thread deliverer;

}  // namespace

namespace VrSDK {

int BiosWmi::GetBiosInfo(WmiInputParams& input, WmiOutputParams& output) {
    Record("other WmiKit", "command " + std::to_string(input.commandWord));
    output = {};
    output.dataSize = 2;
    output.data[0] = 0xab;
    output.data[1] = 0xcd;
    return 0;
}

BiosEventMonitor::BiosEventMonitor() = default;

BiosEventMonitor::~BiosEventMonitor() = default;

int BiosEventMonitor::StartEventMonitor(BiosEventCallback callback) {
    Record("other WmiKit", "start");
    subscriber = callback;
    deliverer = std::thread(subscriber, kECLogEventCode);
    return 0;
}

int BiosEventMonitor::StopEventMonitor() {
    deliverer.join();
    Record("other WmiKit", "stop");
    return 0;
}

}  // namespace VrSDK
