// A print spooler whose answers are written by hand, one for each call.
#pragma once

#include <windows.h>
// windows.h has to come first.
#include <winspool.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "unit/device_reporter/import_override.h"

namespace device_tests {

/// What one call returns. What is absent is not written through the caller's pointer.
struct SpoolerAnswer {
    DWORD error = ERROR_SUCCESS;  ///< Anything else: the call fails.
    std::optional<DWORD> needed;
    std::optional<DWORD> returned;  ///< Of EnumPrintersW only.
};

struct SpoolerCall {
    HANDLE printer = nullptr;  ///< Of GetPrinterDriverW only.
    DWORD flags = 0;           ///< Of EnumPrintersW only.
    wchar_t* text = nullptr;   ///< Server name or environment.
    DWORD level = 0;
    BYTE* block = nullptr;
    DWORD size = 0;
    bool blockIsClear = true;
};

/// While it lives, EnumPrintersW and GetPrinterDriverW give these answers in order. A call too many
/// fails the test, as does an answer that nobody asked for. One at a time.
class SpoolerScript {
public:
    explicit SpoolerScript(std::vector<SpoolerAnswer> answersInOrder);
    ~SpoolerScript();
    SpoolerScript(const SpoolerScript&) = delete;
    SpoolerScript& operator=(const SpoolerScript&) = delete;

    const std::vector<SpoolerCall>& Calls() const { return calls; }

private:
    static BOOL WINAPI AnswerEnumPrinters(DWORD flags, wchar_t* name, DWORD level, BYTE* block,
                                          DWORD size, DWORD* needed, DWORD* returned);
    static BOOL WINAPI AnswerGetPrinterDriver(HANDLE printer, wchar_t* environment, DWORD level,
                                              BYTE* block, DWORD size, DWORD* needed);
    BOOL Answer(SpoolerCall call, DWORD* needed, DWORD* returned);

    std::vector<SpoolerAnswer> answers;
    std::vector<SpoolerCall> calls;
    ImportOverride<decltype(::EnumPrintersW)> enumPrinters;
    ImportOverride<decltype(::GetPrinterDriverW)> getPrinterDriver;
};

/// Leaves blocks of this size on the heap that are full of rubbish.
void LitterHeap(std::size_t size);

}  // namespace device_tests
