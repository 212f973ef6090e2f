// What the print spooler may answer, also in a block that ends where memory ends.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "device_reporter/printer_info.h"
#include "fuzz/campaign.h"
#include "fuzz/guarded_memory.h"
#include "fuzz/sources/spooler.h"

namespace {

using DeviceReporter::DeviceInfo;
using fuzz::Require;
using fuzz::RequireSame;
using namespace fuzz_sources;

constexpr std::size_t kIdPart = 8;

bool IsFetched(const Answer& answer) {
    return answer.firstError == ERROR_INSUFFICIENT_BUFFER && answer.needed != 0 &&
           answer.secondError == ERROR_SUCCESS;
}

std::wstring ExpectedVendorId(const Queue& queue) {
    const std::wstring type = queue.dataType.value_or(L"").substr(0, kIdPart);
    const std::wstring port = queue.port.value_or(L"").substr(0, kIdPart);
    if (type.empty() || port.empty()) {
        return type + port;
    }
    return type.find(port) != std::wstring::npos ? type : type + L"\n" + port;
}

void CheckRecord(const DeviceInfo& record, const Queue& queue, const Spooler& spooler) {
    RequireSame(record.instanceId, *queue.name, "the record is that of the queue");
    RequireSame(record.name, *queue.name, "the name is that of the queue");
    RequireSame(record.description, *queue.driver, "the description is the driver's name");
    RequireSame(record.className, L"Printer", "the class is Printer");
    RequireSame(record.vendorId, ExpectedVendorId(queue), "data type and port make the vendor id");
    Require(!record.isRemovable && record.parent.empty(), "nothing else is made up");
    const bool hasDriver =
        spooler.opens && IsFetched(spooler.driverInfo) && spooler.driverInfo.told >= kEntrySize;
    RequireSame(record.manufacturer, hasDriver ? spooler.driver.maker.value_or(L"") : L"",
                "the maker is the driver's");
    RequireSame(record.containerId, hasDriver ? spooler.driver.hardwareId.value_or(L"") : L"",
                "the container id is the driver's hardware id");
}

void CheckPrinters(const BYTE* block, DWORD count, const Spooler& spooler,
                   const SpoolerInForce& inForce) {
    std::vector<DeviceInfo> printers;
    RequireSame(DeviceReporter::ParsePrinters(block, count, printers), block != nullptr,
                "a list can be read");
    std::size_t next = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, spooler.queues.size()); ++i) {
        const Queue& queue = spooler.queues[i];
        if (queue.name && queue.driver) {
            Require(next < printers.size(), "every queue with a name and a driver is told", next);
            CheckRecord(printers[next++], queue, spooler);
        }
    }
    RequireSame(printers.size(), next, "no queue is made up");
    RequireSame(inForce.OpenPrinters(), 0, "every printer is closed");
}

void CheckSpooler(const Spooler& spooler) {
    const SpoolerInForce inForce(spooler);
    std::unique_ptr<BYTE[]> block;
    DWORD count = 77;
    const bool listed = DeviceReporter::EnumPrinterList(block, count);
    const bool none = spooler.list.firstError == ERROR_SUCCESS;
    const bool fits = std::uint64_t{spooler.list.told} >= spooler.list.returned * kEntrySize;
    RequireSame(listed, none || (IsFetched(spooler.list) && fits),
                "a list is accepted when its entries fit into the size that was told");
    RequireSame(count, listed && !none ? spooler.list.returned : 0, "the count is the spooler's");
    if (listed) {
        CheckPrinters(block.get(), count, spooler, inForce);
    }
}

/// The same list in memory that ends behind its last text.
void CheckBoundedList(const Spooler& spooler) {
    static fuzz::GuardedMemory memory(std::size_t{16} * 1024);
    const SpoolerInForce inForce(spooler);
    // Entries are aligned as the system aligns them: up to seven bytes lie behind the texts.
    BYTE* const block = memory.Last((ListBytes(spooler.queues) + 7) / 8 * 8);
    WriteQueues(spooler.queues, block);
    CheckPrinters(block, static_cast<DWORD>(spooler.queues.size()), spooler, inForce);
}

TEST(PrinterFuzz, TellsTheQueuesThatTheSpoolerHasAndNoOther) {
    fuzz::TryInputs("spooler answers", 200000, MakeSpooler, CheckSpooler);
}

TEST(PrinterFuzz, StaysWithinTheList) {
    fuzz::TryInputs("printer lists", 200000, MakeSpooler, CheckBoundedList);
}

}  // namespace
