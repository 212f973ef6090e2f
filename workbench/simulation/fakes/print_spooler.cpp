#include "simulation/fakes/print_spooler.h"

#include <windows.h>
// windows.h has to come first.
#include <winspool.h>

#include <map>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/text_block.h"

namespace simulation {
namespace {

/// Queue name by handle; absent for the print server itself.
struct OpenPrinters {
    std::map<HANDLE, std::optional<std::wstring>> queues;
};

const Printer* FindPrinter(const Machine& machine, const std::wstring& name) {
    for (const Printer& printer : machine.printers) {
        if (printer.name && SameName(*printer.name, name)) {
            return &printer;
        }
    }
    return nullptr;
}

PRINTER_INFO_2W PrinterInfo(const Printer& printer, TextBlock& texts) {
    PRINTER_INFO_2W info{};
    info.pPrinterName = texts.Place(printer.name);
    info.pShareName = texts.Place(L"");
    info.pPortName = texts.Place(printer.portName);
    info.pDriverName = texts.Place(printer.driverName);
    info.pComment = texts.Place(L"");
    info.pLocation = texts.Place(L"");
    info.pSepFile = texts.Place(L"");
    info.pPrintProcessor = texts.Place(L"winprint");
    info.pDatatype = texts.Place(printer.dataType);
    info.pParameters = texts.Place(L"");
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    info.Priority = 1;
    return info;
}

DRIVER_INFO_6W DriverInfo(const Printer& printer, TextBlock& texts) {
    DRIVER_INFO_6W info{};
    info.cVersion = 3;
    info.pName = texts.Place(printer.driverName);
    info.pEnvironment = texts.Place(L"Windows x64");
    info.pDriverPath = texts.Place(L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\driver.dll");
    info.pDataFile = texts.Place(L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\driver.dat");
    info.pConfigFile = texts.Place(L"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\settings.dll");
    info.pszMfgName = texts.Place(printer.driver->manufacturer);
    info.pszHardwareID = texts.Place(printer.driver->hardwareId);
    return info;
}

/// Writes the array, or only measures it when there is no block.
DWORD WritePrinters(const std::vector<Printer>& printers, BYTE* block) {
    TextBlock texts(block, printers.size() * sizeof(PRINTER_INFO_2W));
    for (std::size_t i = 0; i < printers.size(); ++i) {
        const PRINTER_INFO_2W info = PrinterInfo(printers[i], texts);
        if (block != nullptr) {
            reinterpret_cast<PRINTER_INFO_2W*>(block)[i] = info;
        }
    }
    return texts.Size();
}

DWORD WriteDriver(const Printer& printer, BYTE* block) {
    TextBlock texts(block, sizeof(DRIVER_INFO_6W));
    const DRIVER_INFO_6W info = DriverInfo(printer, texts);
    if (block != nullptr) {
        *reinterpret_cast<DRIVER_INFO_6W*>(block) = info;
    }
    return texts.Size();
}

/// Plans: SuccessWithNothing finds no printer. ShortSize makes the planned number the size that is
/// reported, whether as the size that is needed or together with the entries.
BOOL WINAPI FakeEnumPrintersW(DWORD flags, wchar_t* name, DWORD level, BYTE* block, DWORD size,
                              DWORD* needed, DWORD* returned) {
    FakeCall call("EnumPrintersW");
    call.Argument("flags", flags);
    call.Argument("name", name);
    call.Argument("level", level);
    call.Argument("block", block);
    call.Argument("size", size);
    call.Argument("needed", needed);
    call.Argument("returned", returned);
    const bool nothing = IsPlanned(call, FaultVariant::SuccessWithNothing);
    const bool shortSize = IsPlanned(call, FaultVariant::ShortSize);
    if (call.PlannedFault() && !nothing && !shortSize) {
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
    World& world = call.world();
    const auto lock = world.Lock();
    const std::vector<Printer>& printers = world.machine.printers;
    if (nothing || printers.empty() || (flags & PRINTER_ENUM_LOCAL) == 0) {
        return call.Returns(TRUE);
    }
    if (block == nullptr && size != 0) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    const DWORD whole = WritePrinters(printers, nullptr);
    *needed = shortSize ? call.PlannedFault()->error : whole;
    if (size < whole) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    WritePrinters(printers, block);
    *returned = static_cast<DWORD>(printers.size());
    return call.Returns(TRUE);
}

/// Plans: NullResult succeeds with a null handle.
BOOL WINAPI FakeOpenPrinterW(wchar_t* name, HANDLE* printer, PRINTER_DEFAULTSW* defaults) {
    FakeCall call("OpenPrinterW");
    call.Argument("name", name);
    call.Argument("printer", printer);
    call.Argument("defaults", defaults);
    if (IsPlanned(call, FaultVariant::NullResult)) {
        *printer = nullptr;
        return call.Returns(TRUE);
    }
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    if (printer == nullptr || (name != nullptr && *name == L'\0')) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    if (name != nullptr && FindPrinter(world.machine, name) == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PRINTER_NAME);
    }
    *printer = world.ledger.Acquire(ResourceKind::Printer,
                                    name == nullptr ? "print server" : ToUtf8(name));
    Remember(world.FamilyState<OpenPrinters>().queues, world.ledger, ResourceKind::Printer,
             *printer, name == nullptr ? std::nullopt : std::optional<std::wstring>(name));
    return call.Returns(TRUE);
}

/// Plans: SuccessWithNothing succeeds without writing anything. ShortSize makes the planned number
/// the size that is reported, whether as the size that is needed or together with the structure.
BOOL WINAPI FakeGetPrinterDriverW(HANDLE printer, wchar_t* environment, DWORD level, BYTE* block,
                                  DWORD size, DWORD* needed) {
    FakeCall call("GetPrinterDriverW");
    call.Argument("printer", printer);
    call.Argument("environment", environment);
    call.Argument("level", level);
    call.Argument("block", block);
    call.Argument("size", size);
    call.Argument("needed", needed);
    const bool shortSize = IsPlanned(call, FaultVariant::ShortSize);
    if (IsPlanned(call, FaultVariant::SuccessWithNothing)) {
        return call.Returns(TRUE);
    }
    if (call.PlannedFault() && !shortSize) {
        return call.Fails(FALSE);
    }
    World& world = call.world();
    if (!world.ledger.IsOpen(ResourceKind::Printer, printer)) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (level != 6) {
        return call.Fails(FALSE, ERROR_INVALID_LEVEL);
    }
    if (needed == nullptr) {
        return call.Fails<BOOL>(FALSE, RPC_X_NULL_REF_POINTER);
    }
    const auto lock = world.Lock();
    const std::optional<std::wstring>& name = world.FamilyState<OpenPrinters>().queues.at(printer);
    const Printer* const queue = name ? FindPrinter(world.machine, *name) : nullptr;
    if (queue == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    if (!queue->driver) {
        return call.Fails(FALSE, ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    if (block == nullptr && size != 0) {
        return call.Fails(FALSE, ERROR_INVALID_USER_BUFFER);
    }
    const DWORD whole = WriteDriver(*queue, nullptr);
    *needed = shortSize ? call.PlannedFault()->error : whole;
    if (size < whole) {
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    WriteDriver(*queue, block);
    return call.Returns(TRUE);
}

BOOL WINAPI FakeClosePrinter(HANDLE printer) {
    FakeCall call("ClosePrinter");
    call.Argument("printer", printer);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    return call.world().ledger.Release(ResourceKind::Printer, printer)
               ? call.Returns(TRUE)
               : call.Fails(FALSE, ERROR_INVALID_HANDLE);
}

}  // namespace

void InstallPrintSpoolerFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::EnumPrintersW)>("EnumPrintersW", FakeEnumPrintersW);
    redirection.RedirectIfImported<decltype(::OpenPrinterW)>("OpenPrinterW", FakeOpenPrinterW);
    redirection.RedirectIfImported<decltype(::GetPrinterDriverW)>("GetPrinterDriverW",
                                                                  FakeGetPrinterDriverW);
    redirection.RedirectIfImported<decltype(::ClosePrinter)>("ClosePrinter", FakeClosePrinter);
}

}  // namespace simulation
