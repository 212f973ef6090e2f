// The print queues and what of their drivers gets into their records.
#include "device_reporter/printer_info.h"

#include <windows.h>
#include <winspool.h>

#include <memory>
#include <string>
#include <vector>

#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::FaultVariant;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using device_tests::SamplePrinter;
using DeviceReporter::DeviceInfo;
using DeviceReporter::ParsePrinters;
using DeviceReporter::UpdatePrinterDriverInfo;
using simulation::PrinterDriver;

// --- From the raw list to records ---

constexpr char kCannotOpen[] =
    "log 3 fail to open printer(DeviceReporter::UpdatePrinterDriverInfo)";
constexpr char kNoName[] =
    "log 3 driver name or printer name is empty(DeviceReporter::ParsePrinters)";
constexpr char kNoList[] = "log 3 printerInfoList is null(DeviceReporter::ParsePrinters)";

class PrinterRecord : public device_tests::MachineTest {
protected:
    /// An entry with texts that live as long as the program; null where there is none.
    static PRINTER_INFO_2W Entry(const wchar_t* name, const wchar_t* driver,
                                 const wchar_t* dataType, const wchar_t* port) {
        PRINTER_INFO_2W entry{};
        entry.pPrinterName = const_cast<wchar_t*>(name);
        entry.pDriverName = const_cast<wchar_t*>(driver);
        entry.pDatatype = const_cast<wchar_t*>(dataType);
        entry.pPortName = const_cast<wchar_t*>(port);
        return entry;
    }

    bool Parse(const std::vector<PRINTER_INFO_2W>& entries) {
        return ParsePrinters(reinterpret_cast<const BYTE*>(entries.data()),
                             static_cast<DWORD>(entries.size()), printers);
    }

    /// The vendor id of a queue with this data type and port.
    std::wstring VendorIdOf(const wchar_t* dataType, const wchar_t* port) {
        printers.clear();
        EXPECT_TRUE(Parse({Entry(L"Queue", L"Driver", dataType, port)}));
        return printers.at(0).vendorId;
    }

    std::vector<DeviceInfo> printers;
};

TEST_F(PrinterRecord, TellsWhatTheQueueAndItsDriverSay) {
    machine.printers = {SamplePrinter(L"Office Printer 5"), SamplePrinter(L"\u6253\u5370\u673A")};
    std::unique_ptr<BYTE[]> list;
    DWORD count = 0;
    ASSERT_TRUE(DeviceReporter::EnumPrinterList(list, count));
    EXPECT_TRUE(ParsePrinters(list.get(), count, printers));
    ASSERT_EQ(printers.size(), 2u);
    EXPECT_FALSE(printers[0].isRemovable);
    EXPECT_EQ(printers[0].instanceId, L"Office Printer 5");
    EXPECT_EQ(printers[0].parent, L"");
    EXPECT_EQ(printers[0].name, L"Office Printer 5");
    EXPECT_EQ(printers[0].manufacturer, L"Maker");
    EXPECT_EQ(printers[0].className, L"Printer");
    EXPECT_EQ(printers[0].description, L"Generic Driver");
    EXPECT_EQ(printers[0].vendorId, L"RAW\nUSB001");
    EXPECT_EQ(printers[0].containerId, L"usbprint\\maker_5");
    EXPECT_EQ(printers[1].name, L"\u6253\u5370\u673A");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterRecord, NeedsAListThatMayBeEmpty) {
    EXPECT_FALSE(ParsePrinters(nullptr, 0, printers));
    EXPECT_FALSE(ParsePrinters(nullptr, 2, printers));
    EXPECT_THAT(Log(), ElementsAre(kNoList, kNoList));
    const BYTE list[8] = {};
    EXPECT_TRUE(ParsePrinters(list, 0, printers));
    EXPECT_EQ(printers.size(), 0u);
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_F(PrinterRecord, IsMadeInOrderOfEachEntryThatHasAQueueAndADriverName) {
    printers.emplace_back();
    EXPECT_TRUE(Parse({Entry(nullptr, L"Driver", L"RAW", L"LPT1:"),
                       Entry(L"B", L"Driver 1", L"RAW", L"LPT1:"),
                       Entry(L"Queue", nullptr, L"RAW", L"LPT1:"),
                       Entry(nullptr, nullptr, nullptr, nullptr), Entry(L"", L"", L"", L"")}));
    ASSERT_EQ(printers.size(), 3u);
    EXPECT_EQ(printers[1].name, L"B");
    EXPECT_EQ(printers[1].description, L"Driver 1");
    EXPECT_EQ(printers[2].className, L"Printer");
    EXPECT_THAT(Arguments("OpenPrinterW", "name"), ElementsAre("B", ""));
    EXPECT_THAT(Log(), ElementsAre(kNoName, kCannotOpen, kNoName, kNoName, kCannotOpen));
}

struct IdParts {
    const wchar_t* dataType;
    const wchar_t* port;
    const wchar_t* vendorId;
};

TEST_F(PrinterRecord, MergesEightCharactersOfDataTypeAndPortToAVendorId) {
    for (const auto& [dataType, port, vendorId] : {
             IdParts{L"1234567", L"PORTPRO", L"1234567\nPORTPRO"},
             IdParts{L"12345678", L"PORTPROM", L"12345678\nPORTPROM"},
             IdParts{L"123456789", L"PORTPROMPT:", L"12345678\nPORTPROM"},
             IdParts{nullptr, nullptr, L""},
             IdParts{L"RAW", nullptr, L"RAW"},
             IdParts{nullptr, L"USB001", L"USB001"},
             IdParts{L"RAW", L"", L"RAW"},
             IdParts{L"", L"USB001", L"USB001"},
             // A port that the data type contains is left out.
             IdParts{L"RAW", L"RAW", L"RAW"},
             IdParts{L"XPS_PASS", L"PASS", L"XPS_PASS"},
             IdParts{L"RAW", L"raw", L"RAW\nraw"},
             // They are compared as they were cut: in whole, neither would be as it is.
             IdParts{L"PORTPROMPT", L"PORTPROM_2", L"PORTPROM"},
             IdParts{L"12345678USB001", L"USB001", L"12345678\nUSB001"},
         }) {
        EXPECT_EQ(VendorIdOf(dataType, port), vendorId);
    }
}

// --- A queue's driver ---

constexpr wchar_t kName[] = L"Office Printer 5";

/// A machine with one queue.
class DriverOfAPrinter : public device_tests::MachineTest {
protected:
    DriverOfAPrinter() {
        machine.printers = {SamplePrinter(kName)};
        record.manufacturer = L"old maker";
        record.containerId = L"old id";
    }

    DeviceInfo record;
};

TEST_F(DriverOfAPrinter, IsReadFromTheQueueOfThatNameWhichIsClosedAtLast) {
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(CalledFunctions(), ElementsAre("OpenPrinterW", "GetPrinterDriverW",
                                               "GetPrinterDriverW", "ClosePrinter"));
    EXPECT_THAT(Arguments("OpenPrinterW", "name"), ElementsAre("Office Printer 5"));
    EXPECT_THAT(Arguments("OpenPrinterW", "defaults"), ElementsAre("null"));
}

TEST_F(DriverOfAPrinter, GivesTheRecordItsMakerAndHardwareIdWhereItHasThem) {
    for (const PrinterDriver& driver :
         {PrinterDriver{L"Maker", L"hardware"}, PrinterDriver{std::nullopt, L"hardware"},
          PrinterDriver{L"Maker", std::nullopt}, PrinterDriver{}, PrinterDriver{L"", L""}}) {
        DeviceInfo updated = record;
        machine.printers[0].driver = driver;
        EXPECT_TRUE(UpdatePrinterDriverInfo(kName, updated));
        EXPECT_EQ(updated.manufacturer, driver.manufacturer.value_or(L"old maker"));
        EXPECT_EQ(updated.containerId, driver.hardwareId.value_or(L"old id"));
        for (const std::wstring& text :
             {updated.instanceId, updated.parent, updated.name, updated.className,
              updated.description, updated.vendorId}) {
            EXPECT_EQ(text, L"");
        }
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(DriverOfAPrinter, IsUnknownWhenTheQueueDoesNotTell) {
    EXPECT_FALSE(UpdatePrinterDriverInfo(L"No Such Queue", record));
    Fail("GetPrinterDriverW", 2, 135, FaultVariant::ShortSize);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    Fail("GetPrinterDriverW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"old maker");
    EXPECT_EQ(record.containerId, L"old id");
}

BOOL WINAPI FailWithAHandle(wchar_t*, HANDLE* printer, PRINTER_DEFAULTSW*) {
    *printer = reinterpret_cast<HANDLE>(0x1234);
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

TEST_F(DriverOfAPrinter, IsUnknownAndNothingIsClosedWhenAFailedOpenLeavesAHandle) {
    const ImportOverride<decltype(::OpenPrinterW)> handMade("OpenPrinterW", FailWithAHandle);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(Log(), ElementsAre(kCannotOpen));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

}  // namespace
