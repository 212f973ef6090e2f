// The printer list on the real print spooler.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "device_reporter/printer_info.h"
#include "library/device_sources/installed_printers.h"
#include "library/device_sources/registered_devices.h"
#include "support/real_devices.h"
#include "support/recorded_log.h"

namespace {

using DeviceReporter::DeviceInfo;
using testing::ElementsAre;
using testing::IsEmpty;

class RealPrinters : public testing::Test {
protected:
    void SetUp() override {
        if (!real_devices::RunsInWine()) {
            GTEST_SKIP() << real_devices::kOnlyInWine;
        }
        test_support::WaitForRealDevices();
    }

    static std::map<std::wstring, DeviceInfo> List() {
        std::unique_ptr<BYTE[]> list;
        DWORD count = 0;
        EXPECT_TRUE(DeviceReporter::EnumPrinterList(list, count));
        std::vector<DeviceInfo> printers;
        DeviceReporter::ParsePrinters(list.get(), count, printers);
        std::map<std::wstring, DeviceInfo> byName;
        for (const DeviceInfo& printer : printers) {
            byName.emplace(printer.instanceId, printer);
        }
        EXPECT_EQ(byName.size(), printers.size());
        return byName;
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
};

/// What the spooler says about one queue when it is asked for that queue only.
DeviceInfo AskForQueue(const std::wstring& name) {
    DeviceInfo record;
    HANDLE printer = nullptr;
    EXPECT_TRUE(OpenPrinterW(const_cast<wchar_t*>(name.c_str()), &printer, nullptr));
    alignas(8) BYTE buffer[8192];
    DWORD needed = 0;
    EXPECT_TRUE(GetPrinterW(printer, 2, buffer, sizeof(buffer), &needed));
    const auto& queue = *reinterpret_cast<const PRINTER_INFO_2W*>(buffer);
    record.instanceId = queue.pPrinterName;
    record.description = queue.pDriverName;
    record.vendorId = std::wstring(queue.pDatatype).substr(0, 8) + L"\n" +
                      std::wstring(queue.pPortName).substr(0, 8);
    EXPECT_TRUE(GetPrinterDriverW(printer, nullptr, 6, buffer, sizeof(buffer), &needed));
    const auto& driver = *reinterpret_cast<const DRIVER_INFO_6W*>(buffer);
    record.manufacturer = driver.pszMfgName == nullptr ? L"" : driver.pszMfgName;
    record.containerId = driver.pszHardwareID == nullptr ? L"" : driver.pszHardwareID;
    ClosePrinter(printer);
    return record;
}

/// Queues that the machine has of its own.
std::size_t CountQueues() {
    alignas(8) BYTE buffer[65'536];
    DWORD needed = 0;
    DWORD count = 0;
    EXPECT_TRUE(
        EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 4, buffer, sizeof(buffer), &needed, &count));
    return count;
}

TEST_F(RealPrinters, AreNoneOnAMachineWithoutQueues) {
    if (CountQueues() != 0) {
        GTEST_SKIP() << "this machine has printers";
    }
    EXPECT_EQ(List().size(), 0u);
    EXPECT_THAT(timeline.Texts(),
                ElementsAre("log 3 printerInfoList is null(DeviceReporter::ParsePrinters)"));
}

TEST_F(RealPrinters, AreTheQueuesThatAreInstalled) {
    const std::vector<real_devices::QueueToInstall> queues = {
        {L"Office Printer 5", L"LPT1:", L"RAW"},
        {L"B\u00FCrodrucker \u6253\u5370\u673A", L"FILE:", L"NT EMF 1.008"},
        {L"Third", L"FILE:", L"TEXT"}};
    const std::size_t before = CountQueues();
    const real_devices::InstalledPrinters installed(queues);
    const std::map<std::wstring, DeviceInfo> printers = List();
    EXPECT_EQ(printers.size(), before + queues.size());
    for (const real_devices::QueueToInstall& queue : queues) {
        ASSERT_EQ(printers.count(queue.name), 1u);
        const DeviceInfo& record = printers.at(queue.name);
        const DeviceInfo expected = AskForQueue(queue.name);
        EXPECT_EQ(record.name, queue.name);
        EXPECT_EQ(record.instanceId, expected.instanceId);
        EXPECT_EQ(record.className, L"Printer");
        EXPECT_EQ(record.description, real_devices::kDriverName);
        EXPECT_EQ(record.description, expected.description);
        EXPECT_EQ(record.vendorId, queue.dataType.substr(0, 8) + L"\n" + queue.port);
        EXPECT_EQ(record.vendorId, expected.vendorId);
        EXPECT_EQ(record.manufacturer, expected.manufacturer);
        EXPECT_EQ(record.containerId, expected.containerId);
        EXPECT_FALSE(record.isRemovable);
        EXPECT_EQ(record.parent, L"");
    }
    if (before == 0) {
        EXPECT_THAT(timeline.Texts(), IsEmpty());
    }
}

}  // namespace
