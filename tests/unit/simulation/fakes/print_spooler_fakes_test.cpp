#include "simulation/fakes/print_spooler.h"

#include <gmock/gmock.h>
#include <windows.h>
// windows.h has to come first.
#include <winspool.h>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"

namespace simulation {
namespace {

constexpr DWORD kPoison = 0xDEADBEEF;

class PrintSpoolerFakes : public ::testing::Test {
protected:
    BOOL List(BYTE* block, DWORD size) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, block, size, &needed, &returned);
    }

    /// The queue's name may be null for the print server.
    HANDLE Open(const wchar_t* name) {
        std::wstring text = name;
        HANDLE printer = nullptr;
        EXPECT_TRUE(OpenPrinterW(text.data(), &printer, nullptr));
        return printer;
    }

    BOOL Driver(HANDLE printer, BYTE* block, DWORD size) {
        return GetPrinterDriverW(printer, nullptr, 6, block, size, &needed);
    }

    SimulatedMachine machine{
        GetModuleHandleW(nullptr), PrinterMachine(), {InstallPrintSpoolerFakes}};
    World& world = machine.world();
    DWORD needed = 77;
    DWORD returned = 77;
};

TEST_F(PrintSpoolerFakes, ListQueuesInTwoCalls) {
    EXPECT_FALSE(List(nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(returned, 0u);
    ASSERT_GT(needed, 2 * sizeof(PRINTER_INFO_2W));
    const DWORD size = needed;
    std::vector<BYTE> block(size + 8, 0xEE);
    EXPECT_FALSE(List(block.data(), size - 1));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    SetLastError(kPoison);
    ASSERT_TRUE(List(block.data(), size));
    EXPECT_EQ(GetLastError(), kPoison);
    EXPECT_EQ(needed, size);
    EXPECT_EQ(returned, 2u);
    EXPECT_EQ(block[size], 0xEE);

    const auto* printers = reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
    EXPECT_STREQ(printers[0].pPrinterName, L"Office Printer 5");
    EXPECT_STREQ(printers[0].pDriverName, L"Generic Driver");
    EXPECT_STREQ(printers[0].pDatatype, L"RAW");
    EXPECT_STREQ(printers[0].pPortName, L"USB001");
    EXPECT_STREQ(printers[1].pPrinterName, L"Broken");
    EXPECT_EQ(printers[1].pDriverName, nullptr);
    EXPECT_EQ(printers[1].pDatatype, nullptr);
    for (const wchar_t* text : {printers[0].pPrinterName, printers[1].pPortName}) {
        const auto* address = reinterpret_cast<const BYTE*>(text);
        EXPECT_GE(address, block.data() + 2 * sizeof(PRINTER_INFO_2W));
        EXPECT_LT(address, block.data() + size);
    }

    const JournalEntry entry = world.journal.Entries().at(0);
    EXPECT_EQ(entry["flags"], "2");
    EXPECT_EQ(entry["name"], "null");
    EXPECT_EQ(entry["level"], "2");
    EXPECT_EQ(entry["block"], "null");
    EXPECT_EQ(entry["size"], "0");
    EXPECT_EQ(entry.error, static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

TEST_F(PrintSpoolerFakes, FindNothingWithoutQueues) {
    world.Change([](Machine& changed) { changed.printers.clear(); });
    EXPECT_TRUE(List(nullptr, 0));
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(returned, 0u);
}

TEST_F(PrintSpoolerFakes, GiveTheDriverInTwoCalls) {
    const HANDLE printer = Open(L"office printer 5");
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::Printer), 1u);
    EXPECT_FALSE(Driver(printer, nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    ASSERT_GT(needed, sizeof(DRIVER_INFO_6W));
    std::vector<BYTE> block(needed);
    ASSERT_TRUE(Driver(printer, block.data(), needed));
    const auto* driver = reinterpret_cast<const DRIVER_INFO_6W*>(block.data());
    EXPECT_STREQ(driver->pName, L"Generic Driver");
    EXPECT_STREQ(driver->pszMfgName, L"Graphia");
    EXPECT_STREQ(driver->pszHardwareID, L"USBPRINT\\GraphiaOffice5");
    EXPECT_TRUE(ClosePrinter(printer));
    EXPECT_TRUE(world.ledger.Balanced()) << world.ledger;
    const JournalEntry entry = world.journal.Calls("GetPrinterDriverW").at(1);
    EXPECT_EQ(entry["environment"], "null");
    EXPECT_EQ(entry["level"], "6");
    EXPECT_EQ(entry["size"], std::to_string(needed));
    EXPECT_EQ(world.journal.Calls("OpenPrinterW").at(0)["name"], "office printer 5");
}

TEST_F(PrintSpoolerFakes, RefuseWhatTheMachineLacks) {
    wchar_t unknown[] = L"No Such Queue";
    HANDLE printer = nullptr;
    EXPECT_FALSE(OpenPrinterW(unknown, &printer, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PRINTER_NAME));
    printer = Open(L"Broken");
    EXPECT_FALSE(Driver(printer, nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_UNKNOWN_PRINTER_DRIVER));
    EXPECT_TRUE(ClosePrinter(printer));
    EXPECT_FALSE(Driver(printer, nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_FALSE(ClosePrinter(printer));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(world.ledger.Errors().size(), 1u);
}

TEST_F(PrintSpoolerFakes, ListAsPlanned) {
    world.faults.FailCall("EnumPrintersW", 1, 1722);
    EXPECT_FALSE(List(nullptr, 0));
    EXPECT_EQ(GetLastError(), 1722u);
    world.faults.FailCall("EnumPrintersW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(List(nullptr, 0));
    EXPECT_EQ(needed, 0u);
    needed = 77;
    world.faults.FailCall("EnumPrintersW", 1, 0, FaultVariant::ShortSize);
    EXPECT_FALSE(List(nullptr, 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(needed, 0u);
    std::vector<BYTE> block(4096);
    world.faults.FailCall("EnumPrintersW", 1, 271, FaultVariant::ShortSize);
    EXPECT_TRUE(List(block.data(), 4096));
    EXPECT_EQ(needed, 271u);
    EXPECT_EQ(returned, 2u);
    EXPECT_TRUE(world.faults.Missed().empty());
}

TEST_F(PrintSpoolerFakes, OpenAndDescribeAsPlanned) {
    wchar_t name[] = L"Office Printer 5";
    HANDLE printer = INVALID_HANDLE_VALUE;
    world.faults.FailCall("OpenPrinterW", 1, 5);
    EXPECT_FALSE(OpenPrinterW(name, &printer, nullptr));
    EXPECT_EQ(GetLastError(), 5u);
    world.faults.FailCall("OpenPrinterW", 1, 0, FaultVariant::NullResult);
    EXPECT_TRUE(OpenPrinterW(name, &printer, nullptr));
    EXPECT_EQ(printer, nullptr);
    printer = Open(name);
    world.faults.FailCall("GetPrinterDriverW", 1, 1797);
    EXPECT_FALSE(Driver(printer, nullptr, 0));
    EXPECT_EQ(GetLastError(), 1797u);
    world.faults.FailCall("GetPrinterDriverW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_TRUE(Driver(printer, nullptr, 0));
    EXPECT_EQ(needed, 77u);
    std::vector<BYTE> block(4096);
    world.faults.FailCall("GetPrinterDriverW", 1, 135, FaultVariant::ShortSize);
    EXPECT_TRUE(Driver(printer, block.data(), 4096));
    EXPECT_EQ(needed, 135u);
    world.faults.FailCall("ClosePrinter", 1, 6);
    EXPECT_FALSE(ClosePrinter(printer));
    EXPECT_EQ(world.ledger.CountOpen(ResourceKind::Printer), 1u);
    EXPECT_TRUE(world.faults.Missed().empty());
}

}  // namespace
}  // namespace simulation
