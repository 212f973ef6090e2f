#include "unit/device_reporter/machine_test.h"

#include "simulation/fakes/families.h"

namespace device_tests {

void DeviceTest::TearDown() {
    std::vector<HANDLE> heaps(64);
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (HANDLE heap : heaps) {
        EXPECT_TRUE(HeapValidate(heap, /*dwFlags=*/0, /*lpMem=*/nullptr));
    }
}

const std::vector<simulation::FakeFamily>& DeviceFakeFamilies() {
    // Not all families there are: the log's time stamps and the like would stand in the journal.
    static const std::vector<simulation::FakeFamily> families{
        simulation::InstallDisplayFakes,      simulation::InstallHandleFakes,
        simulation::InstallHeapFakes,         simulation::InstallHidFakes,
        simulation::InstallPrintSpoolerFakes, simulation::InstallRegistryFakes,
        simulation::InstallSetupApiFakes,     simulation::InstallSetupApiInterfaceFakes,
    };
    return families;
}

void MachineTest::TearDown() {
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    for (const simulation::Fault& fault : world.faults.Missed()) {
        ADD_FAILURE() << "no call met the planned fault " << fault;
    }
    DeviceTest::TearDown();
}

std::vector<std::string> MachineTest::Arguments(std::string_view function,
                                                std::string_view name) const {
    std::vector<std::string> values;
    for (const simulation::JournalEntry& call : Calls(function)) {
        values.push_back(call[name]);
    }
    return values;
}

simulation::Device PlainDevice(const std::wstring& instanceId) {
    simulation::Device device;
    device.instanceId = instanceId;
    return device;
}

simulation::DisplayPath SampleDisplay(unsigned number) {
    const std::wstring text = std::to_wstring(number);
    simulation::DisplayPath path;
    path.sourceAdapter = {0x1000, 1};
    path.targetAdapter = path.sourceAdapter;
    path.sourceId = number - 1;
    path.targetId = 4350 + number;
    path.gdiName = L"\\\\.\\DISPLAY" + text;
    path.friendlyName = L"Monitor " + text;
    path.devicePath = L"\\\\?\\DISPLAY#DEL000" + text + L"#5&2a3b4c&0&UID435" + text +
                      L"#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}";
    path.edid = SampleEdid(128);
    return path;
}

std::vector<BYTE> SampleEdid(std::size_t size) {
    std::vector<BYTE> edid;
    for (std::size_t i = 0; i < size; ++i) {
        edid.push_back(static_cast<BYTE>(i + 1));
    }
    if (size > 8) edid[8] = 0x10;
    if (size > 9) edid[9] = 0xAC;
    return edid;
}

simulation::Printer SamplePrinter(const std::wstring& name) {
    return {name, L"Generic Driver", L"RAW", L"USB001",
            simulation::PrinterDriver{L"Maker", L"usbprint\\maker_5"}};
}

}  // namespace device_tests
