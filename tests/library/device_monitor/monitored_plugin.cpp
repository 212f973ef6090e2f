#include "library/device_monitor/monitored_plugin.h"

#include "simulation/call_text.h"
#include "simulation/fakes/threads.h"
#include "simulation/well_known.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"

namespace device_monitor_test {
namespace {

using simulation::DeviceProperty;

constexpr GUID kContainer{0x11111111, 0x2222, 0x3333, {4, 5, 6, 7, 8, 9, 10, 11}};

simulation::Machine MachineOfTests() {
    simulation::Machine machine;
    machine.devices.push_back(UsbDevice(L"USB\\VID_046D&PID_C52B\\1", /*removable=*/true));
    machine.steadyNanoseconds = 5'000'000'000;
    return machine;
}

}  // namespace

simulation::Device UsbDevice(const std::wstring& instanceId, bool removable) {
    simulation::Device device;
    device.instanceId = instanceId;
    device.SetRemovable(removable);
    device.properties = {DeviceProperty::String(simulation::kClassKey, L"USB"),
                         DeviceProperty::Guid(simulation::kContainerIdKey, kContainer)};
    device.interfaces.push_back(
        {simulation::kUsbDeviceInterface, L"\\\\?\\" + instanceId, std::nullopt});
    return device;
}

MonitoredPlugin::MonitoredPlugin() : machine(module.Handle(), MachineOfTests()) {
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    suite.registry.SetValue(kCountValue, 0);
    ConsentStore_SetAnswer("1");
}

MonitoredPlugin::~MonitoredPlugin() {
    // It may refer to what the test's body had.
    suite.log.onLine = nullptr;
    if (running) {
        Stop();
    }
    EXPECT_TRUE(World().ledger.Balanced()) << World().ledger;
    EXPECT_TRUE(World().faults.Missed().empty());
    ConsentStore_Reset();
}

void MonitoredPlugin::Start(bool expectMonitor) {
    EXPECT_TRUE(plugin->Start());
    running = true;
    // First, because a Stop would not reach a monitor without a window.
    if (expectMonitor) {
        ASSERT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") > 0; }));
    }
    ASSERT_TRUE(hours.LoopWaits());
}

void MonitoredPlugin::Stop() {
    EXPECT_TRUE(plugin->Stop());
    running = false;
    EXPECT_TRUE(MonitorEnds());
}

bool MonitoredPlugin::MonitorEnds() {
    return simulation::WaitForThreads(World(), test_support::kPatience);
}

DWORD MonitoredPlugin::MonitorThreadId() {
    return Journal().Calls("RegisterClassW").at(0).threadId;
}

void MonitoredPlugin::PassHours(int count) {
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(hours.PassTick());
        ASSERT_TRUE(ComesTrue([this] { return RequestsAreHandled(); }));
    }
}

bool MonitoredPlugin::RequestsAreHandled() {
    std::size_t waiting = 0;
    for (const simulation::JournalEntry& call : Journal().Calls("PostMessageW")) {
        waiting += call.finished && call["message"] == "2025" && call.result == "1" ? 1 : 0;
    }
    for (const simulation::JournalEntry& call : Journal().Calls("DefWindowProcW")) {
        waiting -= call.finished && call["message"] == "2025" ? 1 : 0;
    }
    return waiting == 0;
}

}  // namespace device_monitor_test
