#include "device_reporter/hid_info.h"

#include <windows.h>
// Not every SDK's header declares C linkage by itself.
#include <setupapi.h>
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "simulation/well_known.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::FaultVariant;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using DeviceReporter::ReadHidStrings;
using DeviceReporter::UpdateHidDeviceInfo;
using simulation::kHidInterface;

constexpr wchar_t kHidPath[] = L"\\\\?\\hid#vid_046d&pid_c077#7&1";
// The structure's fixed part up to the path, the path, its terminator.
constexpr std::size_t kDetailSize = 4 + sizeof(kHidPath);

/// A machine with one HID device.
class HidInfo : public device_tests::MachineTest {
protected:
    HidInfo() {
        record.name = L"old name";
        record.manufacturer = L"old maker";
        GiveStrings(L"Product", L"Maker");
    }

    void GiveStrings(std::optional<std::wstring> product, std::optional<std::wstring> maker) {
        machine.devices = {device_tests::PlainDevice(L"HID\\A")};
        machine.devices[0].interfaces = {{kHidInterface, kHidPath, simulation::HidAnswers{}}};
        machine.devices[0].interfaces[0].hid->product = std::move(product);
        machine.devices[0].interfaces[0].hid->manufacturer = std::move(maker);
    }

    DeviceReporter::DeviceInfo record;
};

// --- From a HID interface to its path ---

/// Opens a set with the HID interface; what that took is not in the journal.
class HidInterfaceDetail : public HidInfo {
protected:
    HidInterfaceDetail() {
        set = SetupDiGetClassDevsW(&kHidInterface, nullptr, nullptr,
                                   DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
        interfaceData.cbSize = sizeof(interfaceData);
        EXPECT_TRUE(SetupDiEnumDeviceInterfaces(set, nullptr, &kHidInterface, 0, &interfaceData));
        world.journal.Clear();
    }

    void TearDown() override {
        SetupDiDestroyDeviceInfoList(set);
        MachineTest::TearDown();
    }

    bool Update() { return UpdateHidDeviceInfo(set, interfaceData, record); }

    HDEVINFO set;
    SP_DEVICE_INTERFACE_DATA interfaceData{};
};

TEST_F(HidInterfaceDetail, LeadsToTheStringsBehindWhichItIsGivenBack) {
    EXPECT_TRUE(Update());
    EXPECT_EQ(record.name, L"Product");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_THAT(
        CalledFunctions(),
        ElementsAre("SetupDiGetDeviceInterfaceDetailW", "GlobalAlloc",
                    "SetupDiGetDeviceInterfaceDetailW", "CreateFileW", "HidD_GetProductString",
                    "HidD_GetManufacturerString", "CloseHandle", "GlobalFree"));
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

TEST_F(HidInterfaceDetail, CountsAsObtainedUnlessItsSizeIsNotToldOrThereIsNoMemory) {
    Fail("SetupDiGetDeviceInterfaceDetailW", 1, ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(Update());
    Fail("GlobalAlloc", 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FALSE(Update());
    Fail("SetupDiGetDeviceInterfaceDetailW", 2, ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(Update());
    Fail("CreateFileW", 1, ERROR_SHARING_VIOLATION);
    EXPECT_TRUE(Update());
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

// --- What the opened device says about itself ---

class HidStrings : public HidInfo {};

TEST_F(HidStrings, ReplaceNameAndManufacturerAndTouchNoOtherField) {
    GiveStrings(L"\u00DCber-Maus", L"\u5C4F");
    EXPECT_TRUE(ReadHidStrings(kHidPath, record));
    EXPECT_EQ(record.name, L"\u00DCber-Maus");
    EXPECT_EQ(record.manufacturer, L"\u5C4F");
    for (const std::wstring& text : {record.instanceId, record.parent, record.className,
                                     record.description, record.vendorId, record.containerId}) {
        EXPECT_EQ(text, L"");
    }
}

TEST_F(HidStrings, NeedAPath) {
    EXPECT_FALSE(ReadHidStrings(nullptr, record));
    EXPECT_THAT(Log(),
                ElementsAre("log 3 devicePath is null(DeviceReporter::UpdateHidDeviceInfo)"));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_F(HidStrings, NeedNoAccessRightOnTheDevice) {
    EXPECT_TRUE(ReadHidStrings(kHidPath, record));
    ASSERT_EQ(Calls("CreateFileW").size(), 1u);
    const simulation::JournalEntry call = Calls("CreateFileW").front();
    EXPECT_EQ(call["access"], "0");
    EXPECT_EQ(call["share"], "3");
    EXPECT_EQ(call["security"], "null");
    EXPECT_EQ(call["disposition"], "3");
    EXPECT_EQ(call["flags"], "1073741824");
    EXPECT_EQ(call["templateFile"], "null");
}

TEST_F(HidStrings, AreFalseWhenTheDeviceCannotBeOpened) {
    Fail("CreateFileW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(ReadHidStrings(kHidPath, record));
    EXPECT_EQ(record.name, L"old name");
}

TEST_F(HidStrings, AreReadIntoOneBufferOfWhichHalfIsOffered) {
    EXPECT_TRUE(ReadHidStrings(kHidPath, record));
    EXPECT_THAT(Arguments("HidD_GetProductString", "size"), ElementsAre("260"));
    EXPECT_THAT(Arguments("HidD_GetManufacturerString", "size"), ElementsAre("260"));
    EXPECT_EQ(Arguments("HidD_GetProductString", "buffer"),
              Arguments("HidD_GetManufacturerString", "buffer"));
}

struct Strings {
    std::optional<std::wstring> product;
    std::optional<std::wstring> maker;
    std::wstring name;
    std::wstring manufacturer;
};

TEST_F(HidStrings, ReplaceWhatTheDeviceHasOneByOne) {
    const std::wstring longest(129, L'p');
    for (const Strings& strings :
         {Strings{L"Product", std::nullopt, L"Product", L"old maker"},
          Strings{std::nullopt, L"Maker", L"old name", L"Maker"},
          Strings{std::nullopt, std::nullopt, L"old name", L"old maker"},
          Strings{L"", L"", L"", L""}, Strings{L"A long name", L"Short", L"A long name", L"Short"},
          Strings{longest, std::wstring(130, L'm'), longest, L"old maker"}}) {
        record.name = L"old name";
        record.manufacturer = L"old maker";
        GiveStrings(strings.product, strings.maker);
        EXPECT_TRUE(ReadHidStrings(kHidPath, record));
        EXPECT_EQ(record.name, strings.name);
        EXPECT_EQ(record.manufacturer, strings.manufacturer);
    }
    EXPECT_THAT(Log(), IsEmpty());
}

BOOLEAN NTAPI FillWithoutTerminator(HANDLE, void* buffer, ULONG size) {
    std::fill_n(static_cast<wchar_t*>(buffer), size / sizeof(wchar_t), L'x');
    return TRUE;
}

TEST_F(HidStrings, EndBehindTheOfferedHalfWhenThereIsNoTerminator) {
    const ImportOverride<decltype(::HidD_GetProductString)> handMade("HidD_GetProductString",
                                                                     FillWithoutTerminator);
    EXPECT_TRUE(ReadHidStrings(kHidPath, record));
    EXPECT_EQ(record.name, std::wstring(130, L'x'));
    EXPECT_EQ(record.manufacturer, L"Maker");
}

}  // namespace
