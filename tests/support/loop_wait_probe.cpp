#include "support/loop_wait_probe.h"

#include <atomic>

#include "support/runtime_waits.h"

namespace test_support {
namespace {

constexpr DWORD kLongWait = 30 * 60 * 1000;

std::atomic<std::size_t> longWaits{0};
std::atomic<DWORD> latestWait{0};

DWORD NoteWait(DWORD milliseconds, const Wait& wait) {
    if (milliseconds >= kLongWait && milliseconds != INFINITE) {
        latestWait = milliseconds;
        ++longWaits;
    }
    return wait(milliseconds);
}

}  // namespace

LoopWaitProbe::LoopWaitProbe(HMODULE module) : redirection(module) {
    longWaits = 0;
    RedirectWaits(redirection, &NoteWait);
}

bool LoopWaitProbe::LoopWaits(std::size_t count, std::chrono::milliseconds limit) const {
    return ComesTrue([count] { return longWaits >= count; }, limit);
}

std::chrono::milliseconds LoopWaitProbe::LatestWait() const {
    return std::chrono::milliseconds(latestWait);
}

}  // namespace test_support
