// A print spooler whose answers are written by hand, one for each call.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <winspool.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "unit/import_override.h"

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
    explicit SpoolerScript(std::vector<SpoolerAnswer> answersInOrder)
        : answers(std::move(answersInOrder)) {
        current = this;
    }
    ~SpoolerScript() {
        EXPECT_EQ(calls.size(), answers.size());
        current = nullptr;
    }
    SpoolerScript(const SpoolerScript&) = delete;
    SpoolerScript& operator=(const SpoolerScript&) = delete;

    const std::vector<SpoolerCall>& Calls() const { return calls; }

private:
    static BOOL WINAPI AnswerEnumPrinters(DWORD flags, wchar_t* name, DWORD level, BYTE* block,
                                          DWORD size, DWORD* needed, DWORD* returned) {
        return current->Answer({nullptr, flags, name, level, block, size}, needed, returned);
    }
    static BOOL WINAPI AnswerGetPrinterDriver(HANDLE printer, wchar_t* environment, DWORD level,
                                              BYTE* block, DWORD size, DWORD* needed) {
        return current->Answer({printer, 0, environment, level, block, size}, needed, nullptr);
    }

    BOOL Answer(SpoolerCall call, DWORD* needed, DWORD* returned) {
        call.blockIsClear = std::all_of(call.block, call.block + (call.block ? call.size : 0),
                                        [](BYTE byte) { return byte == 0; });
        calls.push_back(call);
        if (calls.size() > answers.size()) {
            SetLastError(ERROR_INVALID_FUNCTION);
            return FALSE;
        }
        const SpoolerAnswer& answer = answers[calls.size() - 1];
        if (answer.needed) {
            *needed = *answer.needed;
        }
        if (answer.returned && returned != nullptr) {
            *returned = *answer.returned;
        }
        // A success leaves a misleading number behind, as real functions may.
        SetLastError(answer.error == ERROR_SUCCESS ? ERROR_INVALID_DATA : answer.error);
        return answer.error == ERROR_SUCCESS ? TRUE : FALSE;
    }

    static inline SpoolerScript* current = nullptr;
    std::vector<SpoolerAnswer> answers;
    std::vector<SpoolerCall> calls;
    unit_tests::ImportOverride<decltype(::EnumPrintersW)> enumPrinters{"EnumPrintersW",
                                                                       &AnswerEnumPrinters};
    unit_tests::ImportOverride<decltype(::GetPrinterDriverW)> getPrinterDriver{
        "GetPrinterDriverW", &AnswerGetPrinterDriver};
};

}  // namespace device_tests
