// The functions that a spooler in force answers. Handles are numbers that nobody follows.
#include <windows.h>
// windows.h has to come first.
#include <winspool.h>

#include <cstdint>
#include <cstring>
#include <mutex>

#include "fuzz/sources/spooler.h"
#include "simulation/import_redirection.h"

namespace fuzz_sources {
namespace {

const Spooler* current = nullptr;
int openPrinters = 0;

/// Puts texts behind each other into a block.
class TextArea {
public:
    explicit TextArea(BYTE* begin) : next(begin) {}

    wchar_t* Put(const Text& text) {
        if (!text) {
            return nullptr;
        }
        auto* const place = reinterpret_cast<wchar_t*>(next);
        std::memcpy(place, text->c_str(), TextBytes(text));
        next += TextBytes(text);
        return place;
    }

private:
    BYTE* next;
};

void WriteDriver(BYTE* block) {
    TextArea texts(block + kEntrySize);
    auto& driver = *reinterpret_cast<DRIVER_INFO_6W*>(block);
    driver.pszMfgName = texts.Put(current->driver.maker);
    driver.pszHardwareID = texts.Put(current->driver.hardwareId);
}

BOOL Give(const Answer& answer, const BYTE* block, DWORD* needed) {
    const DWORD error = block == nullptr ? answer.firstError : answer.secondError;
    *needed = block == nullptr ? answer.needed : answer.told;
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

BOOL WINAPI FakeEnumPrinters(DWORD, wchar_t*, DWORD, BYTE* block, DWORD, DWORD* needed,
                             DWORD* returned) {
    const BOOL done = Give(current->list, block, needed);
    if (done && block != nullptr) {
        WriteQueues(current->queues, block);
        *returned = current->list.returned;
    }
    return done;
}

BOOL WINAPI FakeOpenPrinter(wchar_t*, HANDLE* printer, PRINTER_DEFAULTSW*) {
    if (!current->opens) {
        return FALSE;
    }
    ++openPrinters;
    *printer = reinterpret_cast<HANDLE>(std::uintptr_t{0x77});
    return TRUE;
}

BOOL WINAPI FakeClosePrinter(HANDLE) {
    --openPrinters;
    return TRUE;
}

BOOL WINAPI FakeGetPrinterDriver(HANDLE, wchar_t*, DWORD, BYTE* block, DWORD, DWORD* needed) {
    const BOOL done = Give(current->driverInfo, block, needed);
    if (done && block != nullptr) {
        WriteDriver(block);
    }
    return done;
}

void InstallFakes() {
    static simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    imports.Redirect<decltype(::EnumPrintersW)>("EnumPrintersW", FakeEnumPrinters);
    imports.Redirect<decltype(::OpenPrinterW)>("OpenPrinterW", FakeOpenPrinter);
    imports.Redirect<decltype(::ClosePrinter)>("ClosePrinter", FakeClosePrinter);
    imports.Redirect<decltype(::GetPrinterDriverW)>("GetPrinterDriverW", FakeGetPrinterDriver);
}

}  // namespace

void WriteQueues(const std::vector<Queue>& queues, BYTE* block) {
    TextArea texts(block + queues.size() * kEntrySize);
    auto* entry = reinterpret_cast<PRINTER_INFO_2W*>(block);
    for (const Queue& queue : queues) {
        entry->pPrinterName = texts.Put(queue.name);
        entry->pDriverName = texts.Put(queue.driver);
        entry->pDatatype = texts.Put(queue.dataType);
        entry->pPortName = texts.Put(queue.port);
        ++entry;
    }
}

SpoolerInForce::SpoolerInForce(const Spooler& spooler) {
    static std::once_flag installed;
    std::call_once(installed, InstallFakes);
    current = &spooler;
    openPrinters = 0;
}

int SpoolerInForce::OpenPrinters() const { return openPrinters; }

}  // namespace fuzz_sources
