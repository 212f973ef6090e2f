#include "support/loop_wait_probe.h"

#include <atomic>

namespace test_support {
namespace {

constexpr DWORD kLongWait = 30 * 60 * 1000;

std::atomic<std::size_t> longWaits{0};
std::atomic<DWORD> latestWait{0};
decltype(::WaitForSingleObject)* realWaitForSingleObject = nullptr;
decltype(::WaitForMultipleObjects)* realWaitForMultipleObjects = nullptr;
decltype(::SleepConditionVariableSRW)* realSleepConditionVariableSRW = nullptr;

void Note(DWORD milliseconds) {
    if (milliseconds >= kLongWait && milliseconds != INFINITE) {
        latestWait = milliseconds;
        ++longWaits;
    }
}

DWORD WINAPI WatchedWaitForSingleObject(HANDLE object, DWORD milliseconds) {
    Note(milliseconds);
    return realWaitForSingleObject(object, milliseconds);
}

DWORD WINAPI WatchedWaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all,
                                           DWORD milliseconds) {
    Note(milliseconds);
    return realWaitForMultipleObjects(count, objects, all, milliseconds);
}

BOOL WINAPI WatchedSleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock,
                                             DWORD milliseconds, ULONG flags) {
    Note(milliseconds);
    return realSleepConditionVariableSRW(condition, lock, milliseconds, flags);
}

/// Threads of the module may be inside a watched call when the probe goes, so what was found once
/// stays.
template <class Function>
void Watch(simulation::ImportRedirection& redirection, const char* name, Function* replacement,
           Function*& real) {
    if (Function* const original = redirection.RedirectIfImported<Function>(name, replacement)) {
        real = original;
    }
}

}  // namespace

LoopWaitProbe::LoopWaitProbe(HMODULE module) : redirection(module) {
    longWaits = 0;
    Watch(redirection, "WaitForSingleObject", &WatchedWaitForSingleObject, realWaitForSingleObject);
    Watch(redirection, "WaitForMultipleObjects", &WatchedWaitForMultipleObjects,
          realWaitForMultipleObjects);
    Watch(redirection, "SleepConditionVariableSRW", &WatchedSleepConditionVariableSRW,
          realSleepConditionVariableSRW);
}

bool LoopWaitProbe::LoopWaits(std::size_t count, std::chrono::milliseconds limit) const {
    return ComesTrue([count] { return longWaits >= count; }, limit);
}

std::chrono::milliseconds LoopWaitProbe::LatestWait() const {
    return std::chrono::milliseconds(latestWait);
}

}  // namespace test_support
