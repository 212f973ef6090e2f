#include <ctime>

#include "simulation/compiler_runtime.h"
#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

using HundredNanoseconds = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

// From 1601, where file times begin, to 1970.
constexpr HundredNanoseconds kFileTimeOfUnixEpoch{116'444'736'000'000'000};

decltype(::_time64)* realTime64 = nullptr;
decltype(::GetSystemTimeAsFileTime)* realGetSystemTimeAsFileTime = nullptr;
decltype(::QueryPerformanceCounter)* realQueryPerformanceCounter = nullptr;
runtime::CounterFunction* realSteadyCounter = nullptr;

__time64_t __cdecl FakeTime64(__time64_t* seconds) {
    FakeCall call("_time64");
    if (call.PlannedFault()) {
        if (seconds != nullptr) {
            *seconds = -1;
        }
        return call.Returns<__time64_t>(-1);
    }
    const auto wall = call.world().clock.Wall();
    if (!wall) {
        return call.PassTo(realTime64, seconds);
    }
    const __time64_t now = std::chrono::floor<std::chrono::seconds>(*wall).count();
    if (seconds != nullptr) {
        *seconds = now;
    }
    return call.Returns(now);
}

void WINAPI FakeGetSystemTimeAsFileTime(FILETIME* fileTime) {
    FakeCall call("GetSystemTimeAsFileTime");
    const auto wall = call.world().clock.Wall();
    if (!wall) {
        call.PassTo(realGetSystemTimeAsFileTime, fileTime);
        return;
    }
    const auto ticks = static_cast<std::uint64_t>(
        (std::chrono::floor<HundredNanoseconds>(*wall) + kFileTimeOfUnixEpoch).count());
    fileTime->dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFF);
    fileTime->dwHighDateTime = static_cast<DWORD>(ticks >> 32);
}

LONGLONG CountsOf(std::chrono::nanoseconds steady) {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(steady);
    // Whole seconds apart from the rest: the product of all of it would not fit.
    return seconds.count() * frequency.QuadPart +
           (steady - seconds).count() * frequency.QuadPart / 1'000'000'000;
}

BOOL WINAPI FakeQueryPerformanceCounter(LARGE_INTEGER* count) {
    FakeCall call("QueryPerformanceCounter");
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto steady = call.world().clock.Steady();
    if (!steady) {
        return call.PassTo(realQueryPerformanceCounter, count);
    }
    count->QuadPart = CountsOf(*steady);
    return call.Returns(TRUE);
}

long long __cdecl FakeSteadyCounter() {
    FakeCall call("QueryPerformanceCounter");
    const auto steady = call.world().clock.Steady();
    return steady ? call.Returns<long long>(CountsOf(*steady)) : call.PassTo(realSteadyCounter);
}

}  // namespace

void InstallTimeFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"_time64", FakeTime64, &realTime64},
        {"GetSystemTimeAsFileTime", FakeGetSystemTimeAsFileTime, &realGetSystemTimeAsFileTime},
        {"QueryPerformanceCounter", FakeQueryPerformanceCounter, &realQueryPerformanceCounter},
        {runtime::kSteadyCounter, FakeSteadyCounter, &realSteadyCounter},
    });
}

}  // namespace simulation
