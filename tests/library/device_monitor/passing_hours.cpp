#include "library/device_monitor/passing_hours.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string_view>

#include "support/comes_true.h"

namespace device_monitor_test {
namespace {

// Nothing but the timer loop waits that long.
constexpr DWORD kLongWait = 30 * 60 * 1000;
constexpr DWORD kSlice = 1;
constexpr std::uint64_t kMillisecondsPerHour = 3'600'000;
constexpr std::uint64_t kFileTimePerMillisecond = 10'000;

std::atomic<std::size_t> longWaits{0};
std::atomic<bool> tickIsDue{false};
/// By the clock that tells the thread library that the wait has lasted long enough.
std::atomic<std::uint64_t> passedHours{0};
std::atomic<std::uint64_t> passedOnTheWallClock{0};  // Milliseconds.
decltype(::WaitForSingleObject)* realWaitForSingleObject = nullptr;
decltype(::WaitForMultipleObjects)* realWaitForMultipleObjects = nullptr;
decltype(::GetProcAddress)* realGetProcAddress = nullptr;
decltype(::GetTickCount64)* realGetTickCount64 = nullptr;
decltype(::GetSystemTimeAsFileTime)* realGetSystemTimeAsFileTime = nullptr;
decltype(::GetSystemTimePreciseAsFileTime)* realGetSystemTimePreciseAsFileTime = nullptr;

/// Waits in slices, so that the wait can be ended from outside.
template <class Wait>
DWORD WaitForTick(DWORD milliseconds, Wait wait) {
    if (milliseconds < kLongWait || milliseconds == INFINITE) {
        return wait(milliseconds);
    }
    ++longWaits;
    for (;;) {
        const DWORD result = wait(kSlice);
        if (result != WAIT_TIMEOUT || tickIsDue.exchange(false)) {
            return result;
        }
    }
}

DWORD WINAPI HeldWaitForSingleObject(HANDLE object, DWORD milliseconds) {
    return WaitForTick(milliseconds,
                       [&](DWORD slice) { return realWaitForSingleObject(object, slice); });
}

DWORD WINAPI HeldWaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all,
                                        DWORD milliseconds) {
    return WaitForTick(milliseconds, [&](DWORD slice) {
        return realWaitForMultipleObjects(count, objects, all, slice);
    });
}

ULONGLONG WINAPI MovedGetTickCount64() {
    return realGetTickCount64() + passedHours * kMillisecondsPerHour;
}

void Move(FILETIME& fileTime) {
    ULARGE_INTEGER time{};
    time.LowPart = fileTime.dwLowDateTime;
    time.HighPart = fileTime.dwHighDateTime;
    time.QuadPart += passedOnTheWallClock * kFileTimePerMillisecond;
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

/// The thread library looks the precise clock up when it first needs it.
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

/// Threads of the module may be inside a replacement when the redirection goes, so what was found
/// once stays.
template <class Function>
void Replace(simulation::ImportRedirection& redirection, const char* name, Function* replacement,
             Function*& real) {
    if (Function* const original = redirection.RedirectIfImported<Function>(name, replacement)) {
        real = original;
    }
}

bool LoopWaitsFor(std::size_t count) {
    return test_support::ComesTrue([count] { return longWaits >= count; });
}

}  // namespace

PassingHours::PassingHours(HMODULE module, simulation::World& worldOfTest)
    : world(worldOfTest), redirection(module) {
    longWaits = 0;
    tickIsDue = false;
    passedHours = 0;
    passedOnTheWallClock = 0;
    Replace(redirection, "WaitForSingleObject", &HeldWaitForSingleObject, realWaitForSingleObject);
    Replace(redirection, "WaitForMultipleObjects", &HeldWaitForMultipleObjects,
            realWaitForMultipleObjects);
    Replace(redirection, "GetTickCount64", &MovedGetTickCount64, realGetTickCount64);
    Replace(redirection, "GetSystemTimeAsFileTime", &MovedGetSystemTimeAsFileTime,
            realGetSystemTimeAsFileTime);
    Replace(redirection, "GetProcAddress", &MovedGetProcAddress, realGetProcAddress);
}

bool PassingHours::LoopWaits() const { return LoopWaitsFor(1); }

bool PassingHours::PassTick(std::chrono::milliseconds onTheWallClock,
                            std::chrono::milliseconds onTheSteadyClock) {
    if (!LoopWaits()) {
        return false;
    }
    const std::size_t before = longWaits;
    EndWait(onTheWallClock, onTheSteadyClock);
    return LoopWaitsFor(before + 1);
}

void PassingHours::EndWait(std::chrono::milliseconds onTheWallClock,
                           std::chrono::milliseconds onTheSteadyClock) {
    MoveClocks(onTheWallClock, onTheSteadyClock);
    ++passedHours;
    tickIsDue = true;
}

void PassingHours::MoveClocks(std::chrono::milliseconds wall, std::chrono::milliseconds steady) {
    passedOnTheWallClock += static_cast<std::uint64_t>(wall.count());
    world.clock.Advance(steady);
}

}  // namespace device_monitor_test
