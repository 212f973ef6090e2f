#include <ctime>

#include "simulation/compiler_runtime.h"
#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

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
    return call.PassTo(realTime64, seconds);
}

void WINAPI FakeGetSystemTimeAsFileTime(FILETIME* fileTime) {
    FakeCall call("GetSystemTimeAsFileTime");
    call.PassTo(realGetSystemTimeAsFileTime, fileTime);
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
