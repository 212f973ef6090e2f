#include "unit/device_reporter/spooler_script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace device_tests {
namespace {

SpoolerScript* current = nullptr;

}  // namespace

SpoolerScript::SpoolerScript(std::vector<SpoolerAnswer> answersInOrder)
    : answers(std::move(answersInOrder)),
      enumPrinters("EnumPrintersW", &AnswerEnumPrinters),
      getPrinterDriver("GetPrinterDriverW", &AnswerGetPrinterDriver) {
    current = this;
}

SpoolerScript::~SpoolerScript() {
    EXPECT_EQ(calls.size(), answers.size());
    current = nullptr;
}

BOOL SpoolerScript::AnswerEnumPrinters(DWORD flags, wchar_t* name, DWORD level, BYTE* block,
                                       DWORD size, DWORD* needed, DWORD* returned) {
    SpoolerCall call;
    call.flags = flags;
    call.text = name;
    call.level = level;
    call.block = block;
    call.size = size;
    return current->Answer(call, needed, returned);
}

BOOL SpoolerScript::AnswerGetPrinterDriver(HANDLE printer, wchar_t* environment, DWORD level,
                                           BYTE* block, DWORD size, DWORD* needed) {
    SpoolerCall call;
    call.printer = printer;
    call.text = environment;
    call.level = level;
    call.block = block;
    call.size = size;
    return current->Answer(call, needed, nullptr);
}

BOOL SpoolerScript::Answer(SpoolerCall call, DWORD* needed, DWORD* returned) {
    if (call.block != nullptr) {
        call.blockIsClear =
            std::all_of(call.block, call.block + call.size, [](BYTE byte) { return byte == 0; });
    }
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

void LitterHeap(std::size_t size) {
    std::vector<void*> blocks(64);
    for (void*& block : blocks) {
        block = std::malloc(size);
        if (block != nullptr) {
            std::memset(block, 0xCC, size);
        }
    }
    for (void* block : blocks) {
        std::free(block);
    }
}

}  // namespace device_tests
