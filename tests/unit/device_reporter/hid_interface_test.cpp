// From a HID interface to its path.
#include <windows.h>
// windows.h has to come first.
#include <setupapi.h>

#include <cstring>
#include <string>

#include "device_reporter/hid_info.h"
#include "unit/device_reporter/import_override.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using DeviceReporter::UpdateHidDeviceInfo;
using simulation::FaultVariant;
using simulation::kHidInterface;

constexpr wchar_t kPath[] = L"\\\\?\\hid#vid_046d&pid_c077#7&1";
// The structure's fixed part up to the path, the path, its terminator.
constexpr std::size_t kDetailSize = 4 + sizeof(kPath);

/// Opens a set with one HID interface; what that took is not in the journal.
class HidInterfaceDetail : public device_tests::MachineTest {
protected:
    HidInterfaceDetail() {
        machine.devices = {device_tests::PlainDevice(L"HID\\A")};
        machine.devices[0].interfaces = {device_tests::HidInterface(kPath, L"Product", L"Maker")};
        set = SetupDiGetClassDevsW(&kHidInterface, nullptr, nullptr,
                                   DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
        interfaceData.cbSize = sizeof(interfaceData);
        EXPECT_TRUE(SetupDiEnumDeviceInterfaces(set, nullptr, &kHidInterface, 0, &interfaceData));
        world.journal.Clear();
        record.name = L"old name";
        record.manufacturer = L"old maker";
    }

    void TearDown() override {
        SetupDiDestroyDeviceInfoList(set);
        MachineTest::TearDown();
    }

    bool Update() { return UpdateHidDeviceInfo(set, interfaceData, record); }

    HDEVINFO set;
    SP_DEVICE_INTERFACE_DATA interfaceData{};
    DeviceReporter::DeviceInfo record;
};

TEST_F(HidInterfaceDetail, LeadsToTheDevicesStrings) {
    EXPECT_TRUE(Update());
    EXPECT_EQ(record.name, L"Product");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_THAT(Arguments("CreateFileW", "path"), ElementsAre("\\\\?\\hid#vid_046d&pid_c077#7&1"));
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HidInterfaceDetail, IsFetchedWithTwoCallsIntoABlockOfExactlyTheSizeNeeded) {
    EXPECT_TRUE(Update());
    const auto calls = Calls("SetupDiGetDeviceInterfaceDetailW");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0]["detail"], "null");
    EXPECT_EQ(calls[0]["size"], "0");
    EXPECT_NE(calls[0]["required"], "null");
    EXPECT_EQ(calls[0]["deviceData"], "null");
    EXPECT_NE(calls[1]["detail"], "null");
    EXPECT_EQ(calls[1]["structureSize"], "8");
    EXPECT_EQ(calls[1]["size"], std::to_string(kDetailSize));
    EXPECT_EQ(calls[1]["deviceData"], "null");
    EXPECT_THAT(Arguments("GlobalAlloc", "flags"), ElementsAre("64"));
    EXPECT_THAT(Arguments("GlobalAlloc", "size"), ElementsAre(std::to_string(kDetailSize)));
}

TEST_F(HidInterfaceDetail, IsGivenBackBehindTheStrings) {
    EXPECT_TRUE(Update());
    EXPECT_THAT(
        CalledFunctions(),
        ElementsAre("SetupDiGetDeviceInterfaceDetailW", "GlobalAlloc",
                    "SetupDiGetDeviceInterfaceDetailW", "CreateFileW", "HidD_GetProductString",
                    "HidD_GetManufacturerString", "CloseHandle", "GlobalFree"));
}

TEST_F(HidInterfaceDetail, IsRefusedWhenItsSizeIsNotTold) {
    Fail("SetupDiGetDeviceInterfaceDetailW", 1, ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(Update());
    EXPECT_THAT(Log(), ElementsAre("log 3 fail to get device interface detail, lastError = 87"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
    EXPECT_THAT(CalledFunctions(), ElementsAre("SetupDiGetDeviceInterfaceDetailW"));
    EXPECT_EQ(record.name, L"old name");
}

TEST_F(HidInterfaceDetail, IsRefusedWithoutMemory) {
    Fail("GlobalAlloc", 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FALSE(Update());
    EXPECT_THAT(Log(), ElementsAre("log 3 fail to alloc device data"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
    EXPECT_THAT(CalledFunctions(), ElementsAre("SetupDiGetDeviceInterfaceDetailW", "GlobalAlloc"));
    EXPECT_EQ(record.name, L"old name");
}

TEST_F(HidInterfaceDetail, CountsAsObtainedWhenOnlyTheSecondCallFails) {
    Fail("SetupDiGetDeviceInterfaceDetailW", 2, ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(Update());
    EXPECT_EQ(world.journal.Count("CreateFileW"), 0u);
    EXPECT_EQ(world.journal.Count("GlobalFree"), 1u);
    EXPECT_EQ(record.name, L"old name");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HidInterfaceDetail, CountsAsObtainedWhenTheDeviceCannotBeOpened) {
    machine.devices[0].interfaces[0].hid->openError = ERROR_SHARING_VIOLATION;
    EXPECT_TRUE(Update());
    EXPECT_THAT(Log(), ElementsAre("log 3 create file failed, lastError = 32"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
    EXPECT_EQ(record.name, L"old name");
}

TEST_F(HidInterfaceDetail, GoesOnWhenTheSizeQuerySucceeds) {
    Fail("SetupDiGetDeviceInterfaceDetailW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(Update());
    const auto calls = Calls("SetupDiGetDeviceInterfaceDetailW");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1]["size"], "0");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HidInterfaceDetail, DamagesNoMemoryWhenTheSizeToldIsTooSmall) {
    for (DWORD size = 0; size < 12; ++size) {
        Fail("SetupDiGetDeviceInterfaceDetailW", 1, size, FaultVariant::ShortSize);
        EXPECT_TRUE(Update());
        EXPECT_EQ(Calls("SetupDiGetDeviceInterfaceDetailW").back()["size"], std::to_string(size));
        // The structure's size is written into the block whatever size was told.
        EXPECT_GE(std::stoul(Arguments("GlobalAlloc", "size").back()), sizeof(DWORD));
        EXPECT_TRUE(HeapValidate(GetProcessHeap(), /*dwFlags=*/0, /*lpMem=*/nullptr)) << size;
        EXPECT_EQ(record.name, L"old name");
    }
}

bool restIsZero = false;

BOOL WINAPI LookAtBlock(HDEVINFO set, SP_DEVICE_INTERFACE_DATA* data,
                        SP_DEVICE_INTERFACE_DETAIL_DATA_W* detail, DWORD size, DWORD* required,
                        SP_DEVINFO_DATA* deviceData) {
    if (detail != nullptr) {
        const auto* const bytes = reinterpret_cast<const BYTE*>(detail);
        restIsZero = true;
        for (DWORD i = sizeof(detail->cbSize); i < size; ++i) {
            restIsZero = restIsZero && bytes[i] == 0;
        }
    }
    return ImportOverride<decltype(::SetupDiGetDeviceInterfaceDetailW)>::Next()(
        set, data, detail, size, required, deviceData);
}

TEST_F(HidInterfaceDetail, IsFetchedIntoAClearedBlock) {
    const ImportOverride<decltype(::SetupDiGetDeviceInterfaceDetailW)> handMade(
        "SetupDiGetDeviceInterfaceDetailW", LookAtBlock);
    EXPECT_TRUE(Update());
    EXPECT_TRUE(restIsZero);
}

}  // namespace
