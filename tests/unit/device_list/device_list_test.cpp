#include "unit/device_list/device_list_test.h"

#include "device_reporter/device_list_payload.h"

namespace device_list_test {

Keys KeysOf(const test_support::Event& event) {
    Keys keys;
    for (const auto& [key, value] : event.fields) {
        keys.push_back(key);
    }
    return keys;
}

DeviceReporter::DeviceInfo RecordWithTexts(const std::wstring& maker, const std::wstring& desc,
                                           const std::wstring& name) {
    DeviceReporter::DeviceInfo device = ListedDevice({});
    device.manufacturer = maker;
    device.description = desc;
    device.name = name;
    return device;
}

DeviceListTest::DeviceListTest() { AddRemovable(); }

DeviceListTest::~DeviceListTest() {
    EXPECT_TRUE(World().ledger.Balanced()) << World().ledger;
    EXPECT_TRUE(World().faults.Missed().empty());
}

void DeviceListTest::AddRemovable() {
    const DeviceReporter::DeviceInfo device = RemovableDevice();
    reporter.devices[device.instanceId] = device;
}

void DeviceListTest::Add(const std::wstring& instanceId, DeviceReporter::DeviceInfo device) {
    device.instanceId = instanceId;
    device.containerId = kSharedContainer;
    reporter.devices[instanceId] = device;
}

void DeviceListTest::AddAll(const std::wstring& prefix,
                            const std::vector<DeviceReporter::DeviceInfo>& devices) {
    for (std::size_t i = 0; i < devices.size(); ++i) {
        Add(prefix + std::to_wstring(1000 + i), devices[i]);
    }
}

void DeviceListTest::AddPrinter(const std::wstring& name) {
    World().Change([&](simulation::Machine& described) {
        described.printers.push_back({name, L"Generic Driver", L"RAW", L"USB001",
                                      simulation::PrinterDriver{L"Maker", L"hardware"}});
    });
}

void DeviceListTest::AddDisplay(const std::wstring& monitorId, const std::wstring& name) {
    simulation::DisplayPath path;
    path.gdiName = L"\\\\.\\DISPLAY1";
    path.friendlyName = name;
    path.devicePath =
        L"\\\\?\\DISPLAY#" + monitorId + L"#5&1#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}";
    path.edid.emplace(128, BYTE{0});
    (*path.edid)[8] = 0x10;  // DEL
    (*path.edid)[9] = 0xAC;
    World().Change(
        [&](simulation::Machine& described) { described.display.paths.push_back(path); });
}

std::vector<test_support::Event> DeviceListTest::Sent() {
    const std::size_t before = suite.events.All().size();
    DeviceReporter::SendDeviceList(reporter);
    const std::vector<test_support::Event> all = suite.events.All();
    return {all.begin() + static_cast<std::ptrdiff_t>(before), all.end()};
}

}  // namespace device_list_test
