#include "support/runtime_waits.h"

#include <atomic>
#include <cstring>
#include <string_view>

#include "simulation/compiler_runtime.h"

namespace test_support {
namespace {

using simulation::ImportRedirection;
using simulation::runtime::CounterFunction;

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

std::atomic<WaitHandler*> handler{nullptr};
/// By how much the module's clocks are ahead, in milliseconds.
std::atomic<std::int64_t> wallAhead{0};
std::atomic<std::int64_t> waitingAhead{0};

// Microsoft's condition variables, as msvcp140.dll exports them.
struct TimeOfDay {
    std::int64_t seconds;
    long nanoseconds;
};
constexpr int kSignalled = 0;
constexpr int kTimedOut = 2;
using TimedWaitFunction = int __cdecl(void* condition, void* mutex, const TimeOfDay* end);
using NotifyFunction = int __cdecl(void* condition);
using JoinFunction = int __cdecl(void* thread, int* result);
/// A notification between two short waits would be lost. Those after the redirection are not seen
/// here.
std::atomic<std::size_t> notifications{0};
/// The system's waits end that much before or after their time at most.
constexpr std::chrono::milliseconds kAccuracy{20};

// Threads of the module may be inside a replacement when the redirection goes, so what was found
// once stays.
decltype(::WaitForSingleObject)* realWaitForSingleObject = nullptr;
decltype(::WaitForMultipleObjects)* realWaitForMultipleObjects = nullptr;
decltype(::SleepConditionVariableSRW)* realSleepConditionVariableSRW = nullptr;
TimedWaitFunction* realTimedWait = nullptr;
NotifyFunction* realNotifyOne = nullptr;
NotifyFunction* realNotifyAll = nullptr;
JoinFunction* realJoin = nullptr;
decltype(::GetProcAddress)* realGetProcAddress = nullptr;
decltype(::GetTickCount64)* realGetTickCount64 = nullptr;
decltype(::GetSystemTimeAsFileTime)* realGetSystemTimeAsFileTime = nullptr;
decltype(::GetSystemTimePreciseAsFileTime)* realGetSystemTimePreciseAsFileTime = nullptr;
CounterFunction* realWallTicks = nullptr;

template <class Function>
void Replace(ImportRedirection& redirection, const char* name, Function* replacement,
             Function*& real) {
    if (Function* const original = redirection.RedirectIfImported<Function>(name, replacement)) {
        real = original;
    }
}

/// Nothing is allocated: the thread may be the last of a process that ends.
template <class WaitOfImport>
DWORD Handle(DWORD milliseconds, const WaitOfImport& wait) {
    return handler.load()(milliseconds, std::ref(wait));
}

DWORD WINAPI HandledWaitForSingleObject(HANDLE object, DWORD milliseconds) {
    return Handle(milliseconds, [&](DWORD part) { return realWaitForSingleObject(object, part); });
}

DWORD WINAPI HandledWaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all,
                                           DWORD milliseconds) {
    return Handle(milliseconds, [&](DWORD part) {
        return realWaitForMultipleObjects(count, objects, all, part);
    });
}

/// Whether something else than time ended a condition variable's wait. As with mingw-w64's library,
/// such a wait goes on until the clock that may be moved says that it is over.
template <class WaitOfImport>
bool IsWoken(DWORD milliseconds, const WaitOfImport& wait) {
    const auto now = [] { return GetTickCount64() + static_cast<ULONGLONG>(waitingAhead); };
    const ULONGLONG end = now() + milliseconds;
    for (ULONGLONG time = end - milliseconds; time < end; time = now()) {
        if (Handle(static_cast<DWORD>(end - time), wait) != WAIT_TIMEOUT) {
            return true;
        }
    }
    return false;
}

BOOL WINAPI HandledSleepConditionVariableSRW(CONDITION_VARIABLE* condition, SRWLOCK* lock,
                                             DWORD milliseconds, ULONG flags) {
    const std::size_t before = notifications;
    const bool isWoken = IsWoken(milliseconds, [&](DWORD part) -> DWORD {
        const BOOL woken = realSleepConditionVariableSRW(condition, lock, part, flags);
        return woken || notifications != before ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
    });
    if (!isWoken) {
        SetLastError(ERROR_TIMEOUT);
    }
    return isWoken ? TRUE : FALSE;
}

/// Since 1970, by the clock of this program, which nobody moves.
Ticks Now() {
    return std::chrono::floor<Ticks>(std::chrono::system_clock::now().time_since_epoch());
}

int __cdecl HandledTimedWait(void* condition, void* mutex, const TimeOfDay* end) {
    const std::size_t before = notifications;
    const auto left = [&] {
        const Ticks until = std::chrono::seconds(end->seconds) + Ticks(end->nanoseconds / 100);
        return until - Now() - std::chrono::milliseconds(wallAhead);
    };
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left()).count();
    const auto limit = static_cast<DWORD>(std::max<std::int64_t>(milliseconds, 0));
    const bool isWoken = IsWoken(limit, [&](DWORD part) -> DWORD {
        const Ticks until = Now() + std::chrono::milliseconds(part);
        const auto seconds = std::chrono::floor<std::chrono::seconds>(until);
        const TimeOfDay partEnd{seconds.count(),
                                static_cast<long>((until - seconds).count() * 100)};
        realTimedWait(condition, mutex, &partEnd);
        // Its result tells nothing: it depends on the wall clock.
        const bool endedEarly = Now() + kAccuracy < until;
        return endedEarly || notifications != before ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
    });
    // As the library: its own clock has to say so, too.
    return isWoken || left() > Ticks(0) ? kSignalled : kTimedOut;
}

int __cdecl CountedNotifyOne(void* condition) {
    ++notifications;
    return realNotifyOne(condition);
}

int __cdecl CountedNotifyAll(void* condition) {
    ++notifications;
    return realNotifyAll(condition);
}

int __cdecl HandledJoin(void* thread, int* result) {
    int joined = 0;
    Handle(INFINITE, [&](DWORD) {
        joined = realJoin(thread, result);
        return WAIT_OBJECT_0;
    });
    return joined;
}

ULONGLONG WINAPI MovedGetTickCount64() {
    return realGetTickCount64() + static_cast<ULONGLONG>(waitingAhead);
}

void Move(FILETIME& fileTime) {
    ULARGE_INTEGER time{};
    time.LowPart = fileTime.dwLowDateTime;
    time.HighPart = fileTime.dwHighDateTime;
    time.QuadPart += static_cast<ULONGLONG>(Ticks(std::chrono::milliseconds(wallAhead)).count());
    fileTime = {time.LowPart, time.HighPart};
}

void WINAPI MovedGetSystemTimeAsFileTime(FILETIME* fileTime) {
    realGetSystemTimeAsFileTime(fileTime);
    Move(*fileTime);
}

void WINAPI MovedGetSystemTimePreciseAsFileTime(FILETIME* fileTime) {
    realGetSystemTimePreciseAsFileTime(fileTime);
    Move(*fileTime);
}

/// mingw-w64's thread library looks the precise clock up when it first needs it.
FARPROC WINAPI MovedGetProcAddress(HMODULE library, const char* name) {
    const FARPROC function = realGetProcAddress(library, name);
    if (function == nullptr || reinterpret_cast<std::uintptr_t>(name) <= 0xFFFF ||
        std::string_view(name) != "GetSystemTimePreciseAsFileTime") {
        return function;
    }
    realGetSystemTimePreciseAsFileTime =
        reinterpret_cast<decltype(::GetSystemTimePreciseAsFileTime)*>(
            reinterpret_cast<void*>(function));
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&MovedGetSystemTimePreciseAsFileTime));
}

long long __cdecl MovedWallTicks() {
    return realWallTicks() + Ticks(std::chrono::milliseconds(wallAhead)).count();
}

}  // namespace

bool IsRuntimeLibrary(const std::string& name) {
#if defined(_MSC_VER)
    for (const char* known : {"msvcp140", "ucrtbase", "vcruntime140", "api-ms-win-crt-"}) {
        if (_strnicmp(name.c_str(), known, std::strlen(known)) == 0) {
            return true;
        }
    }
    return false;
#else
    return _stricmp(name.c_str(), "msvcrt.dll") == 0;
#endif
}

void RedirectWaits(ImportRedirection& redirection, WaitHandler* waitHandler) {
    handler = waitHandler;
    wallAhead = 0;
    waitingAhead = 0;
    Replace(redirection, "WaitForSingleObject", &HandledWaitForSingleObject,
            realWaitForSingleObject);
    Replace(redirection, "WaitForMultipleObjects", &HandledWaitForMultipleObjects,
            realWaitForMultipleObjects);
    Replace(redirection, "SleepConditionVariableSRW", &HandledSleepConditionVariableSRW,
            realSleepConditionVariableSRW);
    Replace(redirection, "_Cnd_timedwait", &HandledTimedWait, realTimedWait);
    Replace(redirection, "_Cnd_signal", &CountedNotifyOne, realNotifyOne);
    Replace(redirection, "_Cnd_broadcast", &CountedNotifyAll, realNotifyAll);
    Replace(redirection, "_Thrd_join", &HandledJoin, realJoin);
}

void RedirectClocks(ImportRedirection& redirection) {
    Replace(redirection, "GetTickCount64", &MovedGetTickCount64, realGetTickCount64);
    Replace(redirection, "GetSystemTimeAsFileTime", &MovedGetSystemTimeAsFileTime,
            realGetSystemTimeAsFileTime);
    Replace(redirection, "GetSystemTimePreciseAsFileTime", &MovedGetSystemTimePreciseAsFileTime,
            realGetSystemTimePreciseAsFileTime);
    Replace(redirection, "GetProcAddress", &MovedGetProcAddress, realGetProcAddress);
    Replace(redirection, "_Xtime_get_ticks", &MovedWallTicks, realWallTicks);
}

void MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds waiting) {
    wallAhead += wall.count();
    waitingAhead += waiting.count();
}

}  // namespace test_support
