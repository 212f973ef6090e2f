// windows.h has to come first.
#include "instant/instant_calls.h"
// Behind it.
#include <winspool.h>

#include <cstring>
#include <string>

namespace benchmarks {
namespace {

/// Both answers are blocks whose texts lie elsewhere: they stay where they are.
std::vector<std::wstring> names;
std::vector<PRINTER_INFO_2W> queues;
DRIVER_INFO_6W driver{};

wchar_t* Text(const wchar_t* text) { return const_cast<wchar_t*>(text); }

BOOL GiveBlock(const void* answer, DWORD answerSize, BYTE* block, DWORD size, DWORD* needed) {
    *needed = answerSize;
    if (size < answerSize) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    if (answerSize != 0) {
        std::memcpy(block, answer, answerSize);
    }
    return TRUE;
}

BOOL WINAPI EnumPrinters(DWORD, wchar_t*, DWORD, BYTE* block, DWORD size, DWORD* needed,
                         DWORD* count) {
    *count = static_cast<DWORD>(queues.size());
    return GiveBlock(queues.data(), static_cast<DWORD>(queues.size() * sizeof(queues[0])), block,
                     size, needed);
}

BOOL WINAPI OpenPrinter(wchar_t*, HANDLE* printer, void*) {
    *printer = &driver;
    return TRUE;
}

BOOL WINAPI ClosePrinter(HANDLE) { return TRUE; }

BOOL WINAPI GetPrinterDriver(HANDLE, wchar_t*, DWORD, BYTE* block, DWORD size, DWORD* needed) {
    return GiveBlock(&driver, sizeof(driver), block, size, needed);
}

}  // namespace

void PutInstantPrinters(simulation::ImportRedirection& redirection) {
    driver.pszMfgName = Text(L"Inkwell");
    driver.pszHardwareID = Text(L"USBPRINT\\InkwellLaserJet_4A21");
    Put(redirection, "EnumPrintersW", reinterpret_cast<void*>(&EnumPrinters));
    Put(redirection, "OpenPrinterW", reinterpret_cast<void*>(&OpenPrinter));
    Put(redirection, "ClosePrinter", reinterpret_cast<void*>(&ClosePrinter));
    Put(redirection, "GetPrinterDriverW", reinterpret_cast<void*>(&GetPrinterDriver));
}

void SetInstantPrinters(std::size_t count) {
    names.clear();
    queues.clear();
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(L"Printer " + std::to_wstring(i) + L" on the second floor");
    }
    for (const std::wstring& name : names) {
        PRINTER_INFO_2W queue{};
        queue.pPrinterName = Text(name.c_str());
        queue.pDriverName = Text(L"Inkwell Laser 4200 PCL 6");
        queue.pPortName = Text(L"IP_10.1.7.23");
        queue.pDatatype = Text(L"RAW");
        queues.push_back(queue);
    }
}

}  // namespace benchmarks
