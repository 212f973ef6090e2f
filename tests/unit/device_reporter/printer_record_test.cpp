// From the raw printer list to records.
#include <windows.h>
// windows.h has to come first.
#include <winspool.h>

#include <memory>
#include <string>
#include <vector>

#include "device_reporter/printer_info.h"
#include "unit/device_reporter/machine_test.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using DeviceReporter::DeviceInfo;
using DeviceReporter::ParsePrinters;

constexpr char kCannotOpen[] =
    "log 3 fail to open printer(DeviceReporter::UpdatePrinterDriverInfo)";
constexpr char kNoName[] =
    "log 3 driver name or printer name is empty(DeviceReporter::ParsePrinters)";

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
    simulation::Printer printer;
    printer.name = L"Office Printer 5";
    printer.driverName = L"Generic Driver";
    printer.dataType = L"RAW";
    printer.portName = L"USB001";
    printer.driver = simulation::PrinterDriver{L"Maker", L"usbprint\\maker_5"};
    machine.printers = {printer};
    std::unique_ptr<BYTE[]> list;
    DWORD count = 0;
    ASSERT_TRUE(DeviceReporter::EnumPrinterList(list, count));
    EXPECT_TRUE(ParsePrinters(list.get(), count, printers));

    ASSERT_EQ(printers.size(), 1u);
    EXPECT_FALSE(printers[0].isRemovable);
    EXPECT_EQ(printers[0].instanceId, L"Office Printer 5");
    EXPECT_EQ(printers[0].parent, L"");
    EXPECT_EQ(printers[0].name, L"Office Printer 5");
    EXPECT_EQ(printers[0].manufacturer, L"Maker");
    EXPECT_EQ(printers[0].className, L"Printer");
    EXPECT_EQ(printers[0].description, L"Generic Driver");
    EXPECT_EQ(printers[0].vendorId, L"RAW\nUSB001");
    EXPECT_EQ(printers[0].containerId, L"usbprint\\maker_5");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterRecord, NeedsAList) {
    EXPECT_FALSE(ParsePrinters(nullptr, 0, printers));
    EXPECT_FALSE(ParsePrinters(nullptr, 2, printers));
    constexpr char kNoList[] = "log 3 printerInfoList is null(DeviceReporter::ParsePrinters)";
    EXPECT_THAT(Log(), ElementsAre(kNoList, kNoList));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_F(PrinterRecord, IsNotMadeFromAListWithoutEntries) {
    const BYTE list[8] = {};
    EXPECT_TRUE(ParsePrinters(list, 0, printers));
    EXPECT_EQ(printers.size(), 0u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterRecord, IsMissingWhenNoPrinterIsInstalled) {
    std::unique_ptr<BYTE[]> list;
    DWORD count = 0;
    EXPECT_TRUE(DeviceReporter::EnumPrinterList(list, count));
    EXPECT_FALSE(ParsePrinters(list.get(), count, printers));
    EXPECT_EQ(printers.size(), 0u);
    EXPECT_THAT(Log(), ElementsAre("log 3 printerInfoList is null(DeviceReporter::ParsePrinters)"));
}

TEST_F(PrinterRecord, IsMadeForEachEntryInOrderBehindWhatIsThere) {
    printers.emplace_back();
    EXPECT_TRUE(Parse(
        {Entry(L"B", L"Driver 1", L"RAW", L"LPT1:"), Entry(L"A", L"Driver 2", L"EMF", L"COM1:")}));
    ASSERT_EQ(printers.size(), 3u);
    EXPECT_EQ(printers[1].name, L"B");
    EXPECT_EQ(printers[1].description, L"Driver 1");
    EXPECT_EQ(printers[1].vendorId, L"RAW\nLPT1:");
    EXPECT_EQ(printers[2].name, L"A");
    EXPECT_EQ(printers[2].description, L"Driver 2");
    EXPECT_EQ(printers[2].vendorId, L"EMF\nCOM1:");
    EXPECT_THAT(Arguments("OpenPrinterW", "name"), ElementsAre("B", "A"));
}

TEST_F(PrinterRecord, IsKeptWhenTheDriverIsUnknown) {
    EXPECT_TRUE(Parse({Entry(L"Queue", L"Driver", L"RAW", L"LPT1:")}));
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].manufacturer, L"");
    EXPECT_EQ(printers[0].containerId, L"");
    EXPECT_THAT(Log(), ElementsAre(kCannotOpen));
}

TEST_F(PrinterRecord, IsLeftOutWhereQueueOrDriverHasNoName) {
    EXPECT_TRUE(Parse(
        {Entry(nullptr, L"Driver", L"RAW", L"LPT1:"), Entry(L"First", L"Driver", L"RAW", L"LPT1:"),
         Entry(L"Queue", nullptr, L"RAW", L"LPT1:"), Entry(nullptr, nullptr, nullptr, nullptr),
         Entry(L"Second", L"Driver", L"RAW", L"LPT1:")}));
    ASSERT_EQ(printers.size(), 2u);
    EXPECT_EQ(printers[0].name, L"First");
    EXPECT_EQ(printers[1].name, L"Second");
    EXPECT_THAT(Log(), ElementsAre(kNoName, kCannotOpen, kNoName, kNoName, kCannotOpen));
}

TEST_F(PrinterRecord, IsMadeForEmptyNamesToo) {
    EXPECT_TRUE(Parse({Entry(L"", L"", L"", L"")}));
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].className, L"Printer");
}

TEST_F(PrinterRecord, TakesEightCharactersOfDataTypeAndPortForItsVendorId) {
    EXPECT_EQ(VendorIdOf(L"1234567", L"PORTPRO"), L"1234567\nPORTPRO");
    EXPECT_EQ(VendorIdOf(L"12345678", L"PORTPROM"), L"12345678\nPORTPROM");
    EXPECT_EQ(VendorIdOf(L"123456789", L"PORTPROMPT:"), L"12345678\nPORTPROM");
}

TEST_F(PrinterRecord, TakesWhicheverOfDataTypeAndPortThereIs) {
    EXPECT_EQ(VendorIdOf(nullptr, nullptr), L"");
    EXPECT_EQ(VendorIdOf(L"RAW", nullptr), L"RAW");
    EXPECT_EQ(VendorIdOf(nullptr, L"USB001"), L"USB001");
    EXPECT_EQ(VendorIdOf(L"", L""), L"");
    EXPECT_EQ(VendorIdOf(L"RAW", L""), L"RAW");
    EXPECT_EQ(VendorIdOf(L"", L"USB001"), L"USB001");
}

TEST_F(PrinterRecord, LeavesOutAPortThatTheDataTypeContains) {
    EXPECT_EQ(VendorIdOf(L"RAW", L"RAW"), L"RAW");
    EXPECT_EQ(VendorIdOf(L"XPS_PASS", L"PASS"), L"XPS_PASS");
    EXPECT_EQ(VendorIdOf(L"RAW", L"RAWPORT"), L"RAW\nRAWPORT");
    EXPECT_EQ(VendorIdOf(L"RAW", L"raw"), L"RAW\nraw");
}

TEST_F(PrinterRecord, ComparesDataTypeAndPortAsTheyWereCut) {
    // The port would not be contained whole, its first eight characters are.
    EXPECT_EQ(VendorIdOf(L"PORTPROMPT", L"PORTPROM_2"), L"PORTPROM");
    // The data type would contain the port whole, its first eight characters do not.
    EXPECT_EQ(VendorIdOf(L"12345678USB001", L"USB001"), L"12345678\nUSB001");
}

}  // namespace
