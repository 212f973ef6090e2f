#include <memory>
#include <string>

#include "device_reporter/printer_info.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/spooler_script.h"

namespace {

using device_tests::ElementsAre;
using device_tests::IsEmpty;
using device_tests::SpoolerScript;
using DeviceReporter::EnumPrinterList;

simulation::Printer Queue(const std::wstring& name) {
    simulation::Printer printer;
    printer.name = name;
    printer.driverName = L"Generic Driver";
    printer.dataType = L"RAW";
    printer.portName = L"USB001";
    return printer;
}

class PrinterList : public device_tests::MachineTest {
protected:
    bool Enum() { return EnumPrinterList(list, count); }

    std::unique_ptr<BYTE[]> list;
    DWORD count = 99;
};

TEST_F(PrinterList, HoldsTheLocalQueues) {
    machine.printers = {Queue(L"Office Printer 5"), Queue(L"\u6253\u5370\u673A")};
    EXPECT_TRUE(Enum());
    ASSERT_EQ(count, 2u);
    const auto* const entries = reinterpret_cast<const PRINTER_INFO_2W*>(list.get());
    EXPECT_STREQ(entries[0].pPrinterName, L"Office Printer 5");
    EXPECT_STREQ(entries[1].pPrinterName, L"\u6253\u5370\u673A");
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterList, IsAskedForWithTwoCallsAtLevelTwo) {
    machine.printers = {Queue(L"Office Printer 5")};
    EXPECT_TRUE(Enum());
    const auto calls = Calls("EnumPrintersW");
    ASSERT_EQ(calls.size(), 2u);
    for (const simulation::JournalEntry& call : calls) {
        EXPECT_EQ(call["flags"], "2");
        EXPECT_EQ(call["name"], "null");
        EXPECT_EQ(call["level"], "2");
    }
    EXPECT_EQ(calls[0]["block"], "null");
    EXPECT_EQ(calls[0]["size"], "0");
    EXPECT_NE(calls[1]["block"], "null");
    EXPECT_NE(calls[1]["size"], "0");
}

TEST_F(PrinterList, IsAbsentWhenThereIsNoPrinter) {
    EXPECT_TRUE(Enum());
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(world.journal.Count("EnumPrintersW"), 1u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterList, HasNoEntriesWhenTheFirstCallSucceedsWhateverCountItTells) {
    list.reset(new BYTE[1]);
    const SpoolerScript spooler({{ERROR_SUCCESS, 272, 2}});
    EXPECT_TRUE(Enum());
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(count, 0u);
}

TEST_F(PrinterList, HasNoEntriesAfterAFailure) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 272, 2}, {ERROR_BUSY, 272, 2}});
    EXPECT_FALSE(Enum());
    EXPECT_EQ(count, 0u);
}

TEST_F(PrinterList, MayFillItsBlockWithEntriesToTheLastByte) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 272, 0}, {ERROR_SUCCESS, 272, 2}});
    EXPECT_TRUE(Enum());
    EXPECT_EQ(count, 2u);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterList, MayBeEmptyAtLast) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 272, 2}, {ERROR_SUCCESS, 0, 0}});
    EXPECT_TRUE(Enum());
    EXPECT_EQ(count, 0u);
    EXPECT_NE(list, nullptr);
}

TEST_F(PrinterList, IsRefusedWhenItsSizeIsOneByteShortOfItsEntries) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 500, 0}, {ERROR_SUCCESS, 271, 2}});
    EXPECT_FALSE(Enum());
    EXPECT_EQ(count, 0u);
    EXPECT_NE(list, nullptr);
    EXPECT_THAT(Log(), ElementsAre("log 3 printer list data error, dwReturned=2, dwNeeded=271"
                                   "(DeviceReporter::EnumPrinterList)"));
}

TEST_F(PrinterList, IsMeasuredByWhatTheSecondCallSays) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 272, 0}, {ERROR_SUCCESS, 136, 2}});
    EXPECT_FALSE(Enum());
    EXPECT_THAT(Log(), ElementsAre("log 3 printer list data error, dwReturned=2, dwNeeded=136"
                                   "(DeviceReporter::EnumPrinterList)"));
}

TEST_F(PrinterList, IsRefusedWhenItsEntriesWouldNeedMoreThan32Bits) {
    // Times 136 this is 17 * 2^32, of which 32 bits would hold zero.
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, 272, 0}, {ERROR_SUCCESS, 272, 0x20000000}});
    EXPECT_FALSE(Enum());
    EXPECT_EQ(count, 0u);
    EXPECT_THAT(Log(),
                ElementsAre("log 3 printer list data error, dwReturned=536870912, dwNeeded=272"
                            "(DeviceReporter::EnumPrinterList)"));
}

TEST_F(PrinterList, LogsItsNumbersUnsigned) {
    const SpoolerScript spooler(
        {{ERROR_INSUFFICIENT_BUFFER, 272, 0}, {ERROR_SUCCESS, 0x80000000, 0xFFFFFFFF}});
    EXPECT_FALSE(Enum());
    EXPECT_THAT(
        Log(),
        ElementsAre("log 3 printer list data error, dwReturned=4294967295, dwNeeded=2147483648"
                    "(DeviceReporter::EnumPrinterList)"));
}

}  // namespace
