#include <windows.h>
#include <winspool.h>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"
#include "simulation/fakes/text_block.h"

namespace simulation {
namespace {

const Printer* FindPrinter(const Machine& machine, const std::wstring& name) {
    for (const Printer& printer : machine.printers) {
        if (printer.name && SameName(*printer.name, name)) {
            return &printer;
        }
    }
    return nullptr;
}

// What every queue says.
const std::optional<std::wstring> kProcessor = L"winprint";
const std::optional<std::wstring> kEnvironment = L"Windows x64";
const std::optional<std::wstring> kNoText = L"";
const std::optional<std::wstring> kDriverPath =
    L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\driver.dll";
const std::optional<std::wstring> kDataFile =
    L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\driver.dat";
const std::optional<std::wstring> kConfigFile =
    L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\settings.dll";

PRINTER_INFO_2W PrinterInfo(const Printer& printer, TextBlock& texts) {
    PRINTER_INFO_2W info{};
    info.pPrinterName = texts.Place(printer.name);
    info.pShareName = texts.Place(kNoText);
    info.pPortName = texts.Place(printer.portName);
    info.pDriverName = texts.Place(printer.driverName);
    info.pComment = texts.Place(kNoText);
    info.pLocation = texts.Place(kNoText);
    info.pSepFile = texts.Place(kNoText);
    info.pPrintProcessor = texts.Place(kProcessor);
    info.pDatatype = texts.Place(printer.dataType);
    info.pParameters = texts.Place(kNoText);
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    info.Priority = 1;
    return info;
}

DRIVER_INFO_6W DriverInfo(const Printer& printer, TextBlock& texts) {
    DRIVER_INFO_6W info{};
    info.cVersion = 3;
    info.pName = texts.Place(printer.driverName);
    info.pEnvironment = texts.Place(kEnvironment);
    info.pDriverPath = texts.Place(kDriverPath);
    info.pDataFile = texts.Place(kDataFile);
    info.pConfigFile = texts.Place(kConfigFile);
    info.pszMfgName = texts.Place(printer.driver->manufacturer);
    info.pszHardwareID = texts.Place(printer.driver->hardwareId);
    return info;
}

/// Writes of the array what fits, or only measures it when there is no block.
DWORD WritePrinters(const Machine& machine, BYTE* block, std::size_t size) {
    const std::vector<Printer>& printers = machine.printers;
    TextBlock texts(block, machine.lies.spoolerTextsOutside ? 0 : size,
                    printers.size() * sizeof(PRINTER_INFO_2W));
    for (std::size_t i = 0; i < printers.size(); ++i) {
        const PRINTER_INFO_2W info = PrinterInfo(printers[i], texts);
        if ((i + 1) * sizeof(info) <= size) {
            reinterpret_cast<PRINTER_INFO_2W*>(block)[i] = info;
        }
    }
    return texts.Size();
}

DWORD WriteDriver(const Machine& machine, const Printer& printer, BYTE* block, std::size_t size) {
    TextBlock texts(block, machine.lies.spoolerTextsOutside ? 0 : size, sizeof(DRIVER_INFO_6W));
    const DRIVER_INFO_6W info = DriverInfo(printer, texts);
    if (sizeof(info) <= size) {
        *reinterpret_cast<DRIVER_INFO_6W*>(block) = info;
    }
    return texts.Size();
}

/// What each query ends with: tells the size that is needed, or fills the block. `write` writes
/// what fits and returns the whole size. Plans: ShortSize makes the planned number the size that is
/// reported either way.
template <class Write>
BOOL AnswerBlock(FakeCall& call, const SpoolerLies& lies, BYTE* block, DWORD size, DWORD* needed,
                 Write write) {
    if (block == nullptr && size != 0) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    const DWORD demanded = lies.needed.value_or(write(nullptr, 0));
    *needed = call.IsPlanned(FaultVariant::ShortSize) ? call.PlannedFault()->error : demanded;
    if (block == nullptr || size < demanded) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    write(block, size);
    *needed = lies.told.value_or(*needed);
    return call.Returns(TRUE);
}

/// Plans: SuccessWithNothing finds no printer.
BOOL WINAPI FakeEnumPrintersW(DWORD flags, wchar_t* name, DWORD level, BYTE* block, DWORD size,
                              DWORD* needed, DWORD* returned) {
    FakeCall call("EnumPrintersW", Arg{"flags", flags}, Arg{"name", name}, Arg{"level", level},
                  Arg{"block", block}, Arg{"size", size}, Arg{"needed", needed},
                  Arg{"returned", returned});
    const bool nothing = call.IsPlanned(FaultVariant::SuccessWithNothing);
    if (call.PlannedFault() && !nothing && !call.IsPlanned(FaultVariant::ShortSize)) {
        return call.Fails(FALSE);
    }
    if (needed == nullptr || returned == nullptr) {
        return call.Fails<BOOL>(FALSE, RPC_X_NULL_REF_POINTER);
    }
    *needed = 0;
    *returned = 0;
    if (level != 2) {
        return call.Fails(FALSE, ERROR_INVALID_LEVEL);
    }
    if (flags == 0) {
        return call.Fails<BOOL>(FALSE, ERROR_INVALID_FLAGS);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    const std::vector<Printer>& printers = world.machine.printers;
    if (nothing || printers.empty() || (flags & PRINTER_ENUM_LOCAL) == 0) {
        return call.Returns(TRUE);
    }
    const SpoolerLies& lies = world.machine.lies.printers;
    const BOOL answered = AnswerBlock(
        call, lies, block, size, needed,
        [&](BYTE* target, DWORD room) { return WritePrinters(world.machine, target, room); });
    if (answered != FALSE) {
        *returned = lies.returned.value_or(static_cast<DWORD>(printers.size()));
    }
    return answered;
}

/// Plans: NullResult succeeds with a null handle.
BOOL WINAPI FakeOpenPrinterW(wchar_t* name, HANDLE* printer, PRINTER_DEFAULTSW* defaults) {
    FakeCall call("OpenPrinterW", Arg{"name", name}, Arg{"printer", printer},
                  Arg{"defaults", defaults});
    if (call.IsPlanned(FaultVariant::NullResult)) {
        *printer = nullptr;
        return call.Returns(TRUE);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    if (const auto error = call.Refused(
            {{printer == nullptr || (name != nullptr && *name == L'\0'), ERROR_INVALID_PARAMETER},
             {name != nullptr && FindPrinter(world.machine, name) == nullptr,
              ERROR_INVALID_PRINTER_NAME}})) {
        return call.Fails(FALSE, *error);
    }
    const std::wstring queue = name == nullptr ? L"" : name;
    *printer = world.ledger.Acquire(ResourceKind::Printer,
                                    name == nullptr ? "print server" : ToUtf8(queue), queue);
    return call.Returns(TRUE);
}

/// Plans: SuccessWithNothing succeeds without writing anything.
BOOL WINAPI FakeGetPrinterDriverW(HANDLE printer, wchar_t* environment, DWORD level, BYTE* block,
                                  DWORD size, DWORD* needed) {
    FakeCall call("GetPrinterDriverW", Arg{"printer", printer}, Arg{"environment", environment},
                  Arg{"level", level}, Arg{"block", block}, Arg{"size", size},
                  Arg{"needed", needed});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    const auto open = world.ledger.FindOpen(ResourceKind::Printer, printer);
    const Printer* const queue = open ? FindPrinter(world.machine, open->subject) : nullptr;
    if (const auto error =
            call.Refused({{!open, ERROR_INVALID_HANDLE},
                          {level != 6, ERROR_INVALID_LEVEL},
                          {needed == nullptr, RPC_X_NULL_REF_POINTER},
                          {queue == nullptr, ERROR_INVALID_HANDLE},
                          {queue != nullptr && !queue->driver, ERROR_UNKNOWN_PRINTER_DRIVER}},
                         FaultVariant::ShortSize)) {
        return call.Fails(FALSE, *error);
    }
    return AnswerBlock(
        call, world.machine.lies.printerDrivers, block, size, needed,
        [&](BYTE* target, DWORD room) { return WriteDriver(world.machine, *queue, target, room); });
}

BOOL WINAPI FakeClosePrinter(HANDLE printer) {
    FakeCall call("ClosePrinter", Arg{"printer", printer});
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    return call.world().ledger.Release(ResourceKind::Printer, printer)
               ? call.Returns(TRUE)
               : call.Fails(FALSE, ERROR_INVALID_HANDLE);
}

}  // namespace

void InstallPrintSpoolerFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::EnumPrintersW)>("EnumPrintersW", FakeEnumPrintersW),
        Replace<decltype(::OpenPrinterW)>("OpenPrinterW", FakeOpenPrinterW),
        Replace<decltype(::GetPrinterDriverW)>("GetPrinterDriverW", FakeGetPrinterDriverW),
        Replace<decltype(::ClosePrinter)>("ClosePrinter", FakeClosePrinter),
    });
}

}  // namespace simulation
