// What an opened HID device says about itself.
#include <windows.h>
// windows.h has to come first. Not every header of it declares C linkage by itself.
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "device_reporter/hid_info.h"
#include "unit/device_reporter/import_override.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/sample_devices.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using DeviceReporter::ReadHidStrings;
using simulation::FaultVariant;

constexpr wchar_t kPath[] = L"\\\\?\\hid#vid_046d&pid_c077#7&1";

class HidStrings : public device_tests::MachineTest {
protected:
    HidStrings() {
        record.name = L"old name";
        record.manufacturer = L"old maker";
    }

    void GiveDevice(std::optional<std::wstring> product, std::optional<std::wstring> manufacturer) {
        machine.devices = {device_tests::PlainDevice(L"HID\\A")};
        machine.devices[0].interfaces = {
            device_tests::HidInterface(kPath, std::move(product), std::move(manufacturer))};
    }

    DeviceReporter::DeviceInfo record;
};

TEST_F(HidStrings, ReplaceNameAndManufacturer) {
    GiveDevice(L"\u00DCber-Maus", L"\u5C4F");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"\u00DCber-Maus");
    EXPECT_EQ(record.manufacturer, L"\u5C4F");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HidStrings, TouchNoOtherField) {
    GiveDevice(L"Product", L"Maker");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
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
    GiveDevice(L"Product", L"Maker");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    ASSERT_EQ(Calls("CreateFileW").size(), 1u);
    const simulation::JournalEntry call = Calls("CreateFileW").front();
    EXPECT_EQ(call["path"], "\\\\?\\hid#vid_046d&pid_c077#7&1");
    EXPECT_EQ(call["access"], "0");
    EXPECT_EQ(call["share"], "3");
    EXPECT_EQ(call["security"], "null");
    EXPECT_EQ(call["disposition"], "3");
    EXPECT_EQ(call["flags"], "1073741824");
    EXPECT_EQ(call["templateFile"], "null");
}

TEST_F(HidStrings, StayAsTheyWereWhenTheDeviceCannotBeOpened) {
    GiveDevice(L"Product", L"Maker");
    machine.devices[0].interfaces[0].hid->openError = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"old name");
    EXPECT_EQ(record.manufacturer, L"old maker");
    EXPECT_THAT(Log(), ElementsAre("log 3 create file failed, lastError = 5"
                                   "(DeviceReporter::UpdateHidDeviceInfo)"));
    EXPECT_THAT(CalledFunctions(), ElementsAre("CreateFileW"));
}

TEST_F(HidStrings, AreReadInOrderIntoOneBufferOfWhichHalfIsOffered) {
    GiveDevice(L"Product", L"Maker");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_THAT(CalledFunctions(), ElementsAre("CreateFileW", "HidD_GetProductString",
                                               "HidD_GetManufacturerString", "CloseHandle"));
    EXPECT_THAT(Arguments("HidD_GetProductString", "size"), ElementsAre("260"));
    EXPECT_THAT(Arguments("HidD_GetManufacturerString", "size"), ElementsAre("260"));
    EXPECT_EQ(Arguments("HidD_GetProductString", "buffer"),
              Arguments("HidD_GetManufacturerString", "buffer"));
}

TEST_F(HidStrings, StayAsTheyWereOneByOneWhereTheDeviceHasNone) {
    GiveDevice(L"Product", std::nullopt);
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"Product");
    EXPECT_EQ(record.manufacturer, L"old maker");
    GiveDevice(std::nullopt, L"Maker");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"Product");
    EXPECT_EQ(record.manufacturer, L"Maker");
    GiveDevice(std::nullopt, std::nullopt);
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"Product");
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(HidStrings, AreTakenEmptyWhenTheDeviceSaysSo) {
    GiveDevice(L"", L"");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"");
    EXPECT_EQ(record.manufacturer, L"");
}

TEST_F(HidStrings, EndAtTheirTerminatorsAlthoughTheBufferIsNotClearedInBetween) {
    GiveDevice(L"A long product name", L"Short");
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.manufacturer, L"Short");
}

TEST_F(HidStrings, ShowTheProductTwiceWhenTheManufacturerQueryWritesNothing) {
    GiveDevice(L"Product", L"Maker");
    Fail("HidD_GetManufacturerString", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.manufacturer, L"Product");
}

TEST_F(HidStrings, AreEmptyWhenTheFirstQueryWritesNothingIntoTheClearedBuffer) {
    GiveDevice(L"Product", L"Maker");
    Fail("HidD_GetProductString", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, L"");
}

TEST_F(HidStrings, MayBeAsLongAsTheOfferedHalfOfTheBuffer) {
    GiveDevice(std::wstring(129, L'p'), std::wstring(130, L'm'));
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, std::wstring(129, L'p'));
    EXPECT_EQ(record.manufacturer, L"old maker");
}

BOOLEAN NTAPI FillWithoutTerminator(HANDLE, void* buffer, ULONG size) {
    std::fill_n(static_cast<wchar_t*>(buffer), size / sizeof(wchar_t), L'x');
    return TRUE;
}

TEST_F(HidStrings, EndBehindTheOfferedHalfWhenThereIsNoTerminator) {
    GiveDevice(L"Product", L"Maker");
    const ImportOverride<decltype(::HidD_GetProductString)> handMade("HidD_GetProductString",
                                                                     FillWithoutTerminator);
    EXPECT_TRUE(ReadHidStrings(kPath, record));
    EXPECT_EQ(record.name, std::wstring(130, L'x'));
    EXPECT_EQ(record.manufacturer, L"Maker");
}

}  // namespace
