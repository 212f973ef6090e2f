// A queue's driver: its information, and what of it gets into the queue's record.
#include <memory>
#include <string>

#include "device_reporter/printer_info.h"
#include "unit/device_reporter/machine_test.h"
#include "unit/device_reporter/spooler_script.h"

namespace {

using device_tests::ElementsAre;
using device_tests::ImportOverride;
using device_tests::IsEmpty;
using device_tests::SpoolerScript;
using DeviceReporter::GetPrinterDriverInfo;
using DeviceReporter::UpdatePrinterDriverInfo;
using simulation::FaultVariant;
using simulation::ResourceKind;

class PrinterDriverInfo : public device_tests::MachineTest {
protected:
    std::unique_ptr<BYTE[]> info;
};

TEST_F(PrinterDriverInfo, IsAskedForTwiceAtLevelSixOfTheDefaultEnvironment) {
    auto* const printer = reinterpret_cast<HANDLE>(0x1234);
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 300, {}}, {ERROR_SUCCESS, 300, {}}});
    EXPECT_TRUE(GetPrinterDriverInfo(printer, info));
    for (const device_tests::SpoolerCall& call : spooler.Calls()) {
        EXPECT_EQ(call.printer, printer);
        EXPECT_EQ(call.text, nullptr);
        EXPECT_EQ(call.level, 6u);
    }
}

TEST_F(PrinterDriverInfo, NeedsTheWholeStructure) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 300, {}},
                                 {ERROR_SUCCESS, 136, {}},
                                 {ERROR_INSUFFICIENT_BUFFER, 300, {}},
                                 {ERROR_SUCCESS, 135, {}}});
    EXPECT_TRUE(GetPrinterDriverInfo(nullptr, info));
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_FALSE(GetPrinterDriverInfo(nullptr, info));
    EXPECT_THAT(Log(), ElementsAre("log 3 printer driver data error, dwReturned=135, dwNeeded=300"
                                   "(DeviceReporter::GetPrinterDriverInfo)"));
    EXPECT_NE(info, nullptr);
}

TEST_F(PrinterDriverInfo, IsNotMeasuredByTheFirstCallWhenTheSecondTellsNoSize) {
    const SpoolerScript spooler({{ERROR_INSUFFICIENT_BUFFER, 300, {}}, {ERROR_SUCCESS, {}, {}}});
    EXPECT_FALSE(GetPrinterDriverInfo(nullptr, info));
    EXPECT_THAT(Log(), ElementsAre("log 3 printer driver data error, dwReturned=0, dwNeeded=300"
                                   "(DeviceReporter::GetPrinterDriverInfo)"));
}

constexpr wchar_t kName[] = L"Office Printer 5";

class PrinterDriver : public device_tests::MachineTest {
protected:
    PrinterDriver() {
        simulation::Printer printer;
        printer.name = kName;
        printer.driverName = L"Generic Driver";
        printer.driver = simulation::PrinterDriver{L"Maker", L"usbprint\\maker_5"};
        machine.printers = {printer};
        record.manufacturer = L"old maker";
        record.containerId = L"old id";
        // Whatever is logged is logged while the queue is open.
        log.onLine = [this](const test_support::LogLine&) {
            openWhenLogged.push_back(world.ledger.CountOpen(ResourceKind::Printer));
        };
    }

    void ExpectUnchangedRecord() const {
        EXPECT_EQ(record.manufacturer, L"old maker");
        EXPECT_EQ(record.containerId, L"old id");
    }

    DeviceReporter::DeviceInfo record;
    std::vector<std::size_t> openWhenLogged;
};

TEST_F(PrinterDriver, GivesTheRecordItsMakerAndHardwareId) {
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.containerId, L"usbprint\\maker_5");
    for (const std::wstring& text : {record.instanceId, record.parent, record.name,
                                     record.className, record.description, record.vendorId}) {
        EXPECT_EQ(text, L"");
    }
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(PrinterDriver, IsReadFromTheQueueOfThatNameWhichIsClosedAtLast) {
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(CalledFunctions(), ElementsAre("OpenPrinterW", "GetPrinterDriverW",
                                               "GetPrinterDriverW", "ClosePrinter"));
    EXPECT_THAT(Arguments("OpenPrinterW", "name"), ElementsAre("Office Printer 5"));
    EXPECT_THAT(Arguments("OpenPrinterW", "defaults"), ElementsAre("null"));
}

TEST_F(PrinterDriver, LeavesAFieldAsItIsThatTheDriverDoesNotHave) {
    machine.printers[0].driver = simulation::PrinterDriver{std::nullopt, L"hardware"};
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"old maker");
    EXPECT_EQ(record.containerId, L"hardware");
    machine.printers[0].driver = simulation::PrinterDriver{L"Maker", std::nullopt};
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.containerId, L"hardware");
    machine.printers[0].driver = simulation::PrinterDriver{};
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"Maker");
    EXPECT_EQ(record.containerId, L"hardware");
}

TEST_F(PrinterDriver, TakesEmptyTextsAsTheyAre) {
    machine.printers[0].driver = simulation::PrinterDriver{L"", L""};
    EXPECT_TRUE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_EQ(record.manufacturer, L"");
    EXPECT_EQ(record.containerId, L"");
}

TEST_F(PrinterDriver, IsUnknownWhenTheQueueCannotBeOpened) {
    EXPECT_FALSE(UpdatePrinterDriverInfo(L"No Such Queue", record));
    EXPECT_THAT(Log(), ElementsAre("log 3 fail to open printer"
                                   "(DeviceReporter::UpdatePrinterDriverInfo)"));
    EXPECT_THAT(CalledFunctions(), ElementsAre("OpenPrinterW"));
    ExpectUnchangedRecord();
}

BOOL WINAPI FailWithAHandle(wchar_t*, HANDLE* printer, PRINTER_DEFAULTSW*) {
    *printer = reinterpret_cast<HANDLE>(0x1234);
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

TEST_F(PrinterDriver, IsUnknownAndNothingIsClosedWhenAFailedOpenLeavesAHandle) {
    const ImportOverride<decltype(::OpenPrinterW)> handMade("OpenPrinterW", FailWithAHandle);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(Log(), ElementsAre("log 3 fail to open printer"
                                   "(DeviceReporter::UpdatePrinterDriverInfo)"));
    EXPECT_THAT(CalledFunctions(), IsEmpty());
}

TEST_F(PrinterDriver, IsUnknownWhenTheSpoolerDoesNotTell) {
    machine.printers[0].driver.reset();
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(Log(), ElementsAre("log 3 lastError != ERROR_INSUFFICIENT_BUFFER, lastError=1797"
                                   "(DeviceReporter::GetPrinterDriverInfo)",
                                   "log 3 fail to get printer driver info"
                                   "(DeviceReporter::UpdatePrinterDriverInfo)"));
    EXPECT_THAT(openWhenLogged, ElementsAre(1u, 1u));
    ExpectUnchangedRecord();
}

TEST_F(PrinterDriver, IsUnknownWhenTheInformationIsTooShort) {
    Fail("GetPrinterDriverW", 2, 135, FaultVariant::ShortSize);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    ASSERT_EQ(Log().size(), 2u);
    EXPECT_EQ(Log()[1],
              "log 3 fail to get printer driver info"
              "(DeviceReporter::UpdatePrinterDriverInfo)");
    ExpectUnchangedRecord();
}

TEST_F(PrinterDriver, IsUnknownWhenThereIsNothingToFetch) {
    Fail("GetPrinterDriverW", 1, 0, FaultVariant::SuccessWithNothing);
    EXPECT_FALSE(UpdatePrinterDriverInfo(kName, record));
    EXPECT_THAT(Log(), ElementsAre("log 3 driverInfo is null"
                                   "(DeviceReporter::UpdatePrinterDriverInfo)"));
    EXPECT_THAT(openWhenLogged, ElementsAre(1u));
    EXPECT_THAT(CalledFunctions(),
                ElementsAre("OpenPrinterW", "GetPrinterDriverW", "ClosePrinter"));
    ExpectUnchangedRecord();
}

}  // namespace
