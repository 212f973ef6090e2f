#include <windows.h>
#include <winspool.h>

#include "floors/plain_calls.h"

namespace benchmarks {
namespace {

constexpr DWORD kBlockSize = 64 * sizeof(PRINTER_INFO_2W);

}  // namespace

std::size_t WalkPrinters() {
    static BYTE list[kBlockSize];
    static BYTE driver[kBlockSize];
    DWORD needed = 0;
    DWORD count = 0;
    EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count);
    EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, list, kBlockSize, &needed, &count);
    const auto* const queues = reinterpret_cast<const PRINTER_INFO_2W*>(list);
    for (DWORD i = 0; i < count; ++i) {
        HANDLE printer = nullptr;
        OpenPrinterW(queues[i].pPrinterName, &printer, nullptr);
        GetPrinterDriverW(printer, nullptr, 6, nullptr, 0, &needed);
        GetPrinterDriverW(printer, nullptr, 6, driver, kBlockSize, &needed);
        ClosePrinter(printer);
    }
    return count;
}

}  // namespace benchmarks
