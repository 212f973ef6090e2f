// The print spooler's two-call protocol.
#pragma once

#include <windows.h>

#include <memory>
#include <new>

#include "report/log_line.h"

namespace DeviceReporter {

/// How one query names itself in its log lines.
struct SpoolerQueryTexts {
    const char* functionName;
    const char* secondCallFailed;
};

/// Asks for a size, takes one zeroed block of exactly that size and fetches the data into it.
///
/// `askSize` is called once as `BOOL(DWORD& needed)`, without a block: it leaves in `needed` the
/// size that the spooler needs. `fetch` is called once as `BOOL(BYTE* block, DWORD size)`, with the
/// block. Both return with the spooler's error still in the thread's last error. What `block` held
/// before is freed. False, with a log line, on every failure; a block that was taken by then stays
/// in `block`. True with no block when there is nothing to fetch. `blockSize` is the size of the
/// block, or 0.
template <typename AskSize, typename Fetch>
bool RunSpoolerQuery(const SpoolerQueryTexts& texts, AskSize askSize, Fetch fetch,
                     std::unique_ptr<BYTE[]>& block, DWORD& blockSize) {
    block.reset();
    blockSize = 0;
    DWORD needed = 0;
    if (askSize(needed)) {
        return true;
    }
    const DWORD sizeError = GetLastError();
    if (sizeError != ERROR_INSUFFICIENT_BUFFER) {
        WriteLogLine(LOG_LEVEL_NORMAL, texts.functionName,
                     "lastError != ERROR_INSUFFICIENT_BUFFER, lastError=", sizeError);
        return false;
    }
    if (needed == 0) {
        WriteLogLine(LOG_LEVEL_NORMAL, texts.functionName,
                     "ERROR_INSUFFICIENT_BUFFER, but dwNeeded=", needed);
        return false;
    }
    block.reset(new (std::nothrow) BYTE[needed]());
    if (!block) {
        WriteLogLine(LOG_LEVEL_NORMAL, texts.functionName,
                     "cannot create printer byte buffer, dwNeeded=", needed);
        return false;
    }
    blockSize = needed;
    if (!fetch(block.get(), blockSize)) {
        const DWORD error = GetLastError();
        WriteLogLine(LOG_LEVEL_NORMAL, texts.functionName, texts.secondCallFailed, error);
        return false;
    }
    return true;
}

}  // namespace DeviceReporter
