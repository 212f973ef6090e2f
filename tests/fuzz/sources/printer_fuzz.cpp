// What the print spooler may answer, lies about sizes among it, also in a block that ends where
// memory ends.
#include <windows.h>
#include <gtest/gtest.h>
#include <winspool.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device_reporter/printer_info.h"
#include "fuzz/campaign.h"
#include "fuzz/guarded_memory.h"
#include "fuzz/sources/simulated_system.h"
#include "fuzz/texts.h"

namespace {

using DeviceReporter::DeviceInfo;
using fuzz::Require;
using fuzz::RequireSame;
using fuzz_sources::Shown;
using simulation::Printer;
using simulation::SpoolerLies;
using Text = std::optional<std::wstring>;

constexpr std::size_t kIdPart = 8;
/// Of PRINTER_INFO_2W and of DRIVER_INFO_6W, in bytes.
constexpr std::size_t kEntrySize = 136;

/// The errors of the two calls of a query; 0 for none. A first call without error finds nothing.
struct Errors {
    bool nothing = false;
    DWORD first = 0;
    DWORD second = 0;

    bool None() const { return !nothing && first == 0 && second == 0; }
};

struct Spooler {
    simulation::Machine machine;
    DWORD listSize = 0;  ///< In truth.
    Errors list;
    Errors driver;  ///< Of every queue.
    bool opens = true;
};

std::string ShownQuery(const Errors& errors, const SpoolerLies& lies) {
    return Shown(errors.nothing, errors.first, errors.second, lies.needed, lies.told,
                 lies.returned);
}

void PrintTo(const Spooler& spooler, std::ostream* stream) {
    *stream << "nothing, errors and lies of list "
            << ShownQuery(spooler.list, spooler.machine.lies.printers) << " and drivers "
            << ShownQuery(spooler.driver, spooler.machine.lies.printerDrivers) << ", queues "
            << (spooler.opens ? "open" : "do not open")
            << (spooler.machine.lies.spoolerTextsOutside ? ", texts outside the block" : "");
    for (const Printer& queue : spooler.machine.printers) {
        *stream << "\n    queue, driver, data type, port, maker, hardware id: "
                << Shown(queue.name, queue.driverName, queue.dataType, queue.portName,
                         queue.driver->manufacturer, queue.driver->hardwareId);
    }
}

/// Without NULs: a text in a block ends at its first.
Text MakePointedText(fuzz::Random& random, std::size_t nullOneIn) {
    if (random.OneIn(nullOneIn)) {
        return std::nullopt;
    }
    const std::wstring text = fuzz::MakeText(random, 40);
    return text.substr(0, text.find(L'\0'));
}

Errors MakeErrors(fuzz::Random& random) {
    constexpr DWORD kErrors[] = {ERROR_ACCESS_DENIED, ERROR_INVALID_HANDLE, 1722};
    Errors errors;
    errors.nothing = random.OneIn(64);
    errors.first = random.OneIn(16) ? random.Pick(kErrors) : 0;
    errors.second = random.OneIn(16) ? random.Pick(kErrors) : 0;
    return errors;
}

/// `size` is what `entries` take, or a little less.
SpoolerLies MakeLies(fuzz::Random& random, std::size_t size, std::size_t entries) {
    SpoolerLies lies;
    if (random.OneIn(16)) {
        lies.needed = static_cast<DWORD>(random.OneIn(2) ? 0 : random.Below(size + 1));
    }
    const std::size_t block = lies.needed.value_or(static_cast<DWORD>(size));
    if (random.OneIn(4)) {
        const std::size_t kSizes[] = {random.Below(block + 1), block + kEntrySize, 0x7FFFFFFF,
                                      0xFFFFFFFF};
        lies.told = static_cast<DWORD>(random.Pick(kSizes));
    }
    if (random.OneIn(4)) {
        // Fewer than there are, or more than fit. One that fits and is not there is garbage that
        // nobody can tell from an entry.
        const std::size_t kCounts[] = {random.Below(entries + 1), block / kEntrySize + 1, 0x1E1E1E2,
                                       0xFFFFFFFF};
        lies.returned = static_cast<DWORD>(random.Pick(kCounts));
    }
    return lies;
}

/// What the spooler asks for as long as it tells the truth.
DWORD ListSize() {
    DWORD needed = 0;
    DWORD returned = 0;
    EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &returned);
    return needed;
}

Spooler MakeSpooler(fuzz::Random& random) {
    Spooler spooler;
    simulation::Machine& machine = spooler.machine;
    const simulation::PrinterDriver driver{MakePointedText(random, 4), MakePointedText(random, 4)};
    machine.printers.resize(random.Below(4));
    for (Printer& queue : machine.printers) {
        queue = {MakePointedText(random, 8), MakePointedText(random, 8), MakePointedText(random, 4),
                 MakePointedText(random, 4), driver};
        if (queue.dataType && random.OneIn(8)) {
            queue.portName = queue.dataType->substr(random.Below(queue.dataType->size() + 1));
        }
    }
    fuzz_sources::RunOn(machine);
    spooler.listSize = ListSize();
    machine.lies.printers = MakeLies(random, spooler.listSize, machine.printers.size());
    machine.lies.printerDrivers = MakeLies(random, 3 * kEntrySize, 1);
    machine.lies.spoolerTextsOutside = random.OneIn(8);
    spooler.list = MakeErrors(random);
    spooler.driver = MakeErrors(random);
    spooler.opens = !random.OneIn(8);
    return spooler;
}

std::wstring ExpectedVendorId(const Printer& queue) {
    const std::wstring type = queue.dataType.value_or(L"").substr(0, kIdPart);
    const std::wstring port = queue.portName.value_or(L"").substr(0, kIdPart);
    if (type.empty() || port.empty()) {
        return type + port;
    }
    return type.find(port) != std::wstring::npos ? type : type + L"\n" + port;
}

/// How much of a block of `size` bytes can be believed to be filled.
std::uint64_t FilledBytes(const SpoolerLies& lies, DWORD size) {
    const DWORD block = lies.needed.value_or(size);
    return std::min(block, lies.told.value_or(block));
}

bool HasDriver(const Spooler& spooler, const Printer& queue) {
    // More than an entry's size is asked for in truth.
    return spooler.opens && !queue.name->empty() && spooler.driver.None() &&
           FilledBytes(spooler.machine.lies.printerDrivers, 2 * kEntrySize) >= kEntrySize;
}

void CheckRecord(const DeviceInfo& record, const Printer& queue, const Spooler& spooler) {
    Require(record.instanceId == *queue.name && record.name == *queue.name &&
                record.description == *queue.driverName && record.className == L"Printer",
            "the record is that of the queue", record.instanceId, record.name, record.description);
    RequireSame(record.vendorId, ExpectedVendorId(queue), "data type and port make the vendor id");
    Require(!record.isRemovable && record.parent.empty(), "nothing else is made up");
    const bool hasDriver = HasDriver(spooler, queue);
    RequireSame(record.manufacturer, hasDriver ? queue.driver->manufacturer.value_or(L"") : L"",
                "the maker is the driver's");
    RequireSame(record.containerId, hasDriver ? queue.driver->hardwareId.value_or(L"") : L"",
                "the container id is the driver's hardware id");
}

void CheckPrinters(const BYTE* block, DWORD count, const Spooler& spooler) {
    std::vector<DeviceInfo> printers;
    RequireSame(DeviceReporter::ParsePrinters(block, count, printers), block != nullptr,
                "a list can be read");
    const std::vector<Printer>& queues = spooler.machine.printers;
    std::size_t next = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, queues.size()); ++i) {
        if (queues[i].name && queues[i].driverName) {
            Require(next < printers.size(), "every queue with a name and a driver is told", next);
            CheckRecord(printers[next++], queues[i], spooler);
        }
    }
    RequireSame(printers.size(), next, "no queue is made up");
}

void Plan(simulation::FaultPlan& faults, const char* function, const Errors& errors,
          unsigned queries) {
    if (errors.nothing) {
        faults.FailEveryCall(function, 0, simulation::FaultVariant::SuccessWithNothing);
    } else if (errors.first != 0) {
        faults.FailEveryCall(function, errors.first);
    } else if (errors.second != 0) {
        for (unsigned query = 1; query <= queries; ++query) {
            faults.FailCall(function, 2 * query, errors.second);
        }
    }
}

simulation::World& RunOn(const Spooler& spooler) {
    simulation::World& world = fuzz_sources::RunOn(spooler.machine);
    Plan(world.faults, "EnumPrintersW", spooler.list, 1);
    Plan(world.faults, "GetPrinterDriverW", spooler.driver,
         static_cast<unsigned>(spooler.machine.printers.size()));
    if (!spooler.opens) {
        world.faults.FailEveryCall("OpenPrinterW", ERROR_ACCESS_DENIED);
    }
    return world;
}

void CheckSpooler(const Spooler& spooler) {
    const SpoolerLies& lies = spooler.machine.lies.printers;
    const auto queues = static_cast<DWORD>(spooler.machine.printers.size());
    const simulation::World& world = RunOn(spooler);
    std::unique_ptr<BYTE[]> block;
    DWORD count = 77;
    const bool listed = DeviceReporter::EnumPrinterList(block, count);
    const bool none = spooler.list.nothing || (queues == 0 && spooler.list.first == 0);
    const DWORD returned = lies.returned.value_or(queues);
    const bool fits = lies.needed.value_or(spooler.listSize) != 0 &&
                      FilledBytes(lies, spooler.listSize) >= std::uint64_t{returned} * kEntrySize;
    RequireSame(
        listed, none || (spooler.list.None() && fits),
        "a list is accepted when its entries fit into its block and the size that was told");
    RequireSame(count, listed && !none ? returned : 0, "the count is the spooler's");
    if (listed) {
        CheckPrinters(block.get(), count, spooler);
    }
    fuzz_sources::RequireAllReturned(world);
}

/// The same list in memory that ends behind its last text.
void CheckBoundedList(const Spooler& spooler) {
    static fuzz::GuardedMemory memory(std::size_t{16} * 1024);
    Spooler honest = spooler;
    honest.machine.lies.printers = {};
    honest.list = {};
    const simulation::World& world = RunOn(honest);
    // Entries are aligned as the system aligns them: up to seven bytes lie behind the texts.
    BYTE* const block = memory.Last((honest.listSize + 7) / 8 * 8);
    DWORD needed = 0;
    DWORD count = 0;
    EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, block, honest.listSize, &needed, &count);
    RequireSame(count, honest.machine.printers.size(), "the list is whole");
    CheckPrinters(block, count, honest);
    fuzz_sources::RequireAllReturned(world);
}

TEST(PrinterFuzz, TellsTheQueuesThatTheSpoolerHasAndNoOther) {
    fuzz::TryInputs("spooler answers", 200000, MakeSpooler, CheckSpooler);
}

TEST(PrinterFuzz, StaysWithinTheList) {
    fuzz::TryInputs("printer lists", 200000, MakeSpooler, CheckBoundedList);
}

}  // namespace
