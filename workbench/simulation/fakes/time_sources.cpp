#include <ctime>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

decltype(::_time64)* realTime64 = nullptr;
decltype(::GetSystemTimeAsFileTime)* realGetSystemTimeAsFileTime = nullptr;
decltype(::QueryPerformanceCounter)* realQueryPerformanceCounter = nullptr;

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

BOOL WINAPI FakeQueryPerformanceCounter(LARGE_INTEGER* count) {
    FakeCall call("QueryPerformanceCounter");
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const auto steady = call.world().clock.Steady();
    if (!steady) {
        return call.PassTo(realQueryPerformanceCounter, count);
    }
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(*steady);
    // Whole seconds apart from the rest: the product of all of it would not fit.
    count->QuadPart = seconds.count() * frequency.QuadPart +
                      (*steady - seconds).count() * frequency.QuadPart / 1'000'000'000;
    return call.Returns(TRUE);
}

}  // namespace

void InstallTimeFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"_time64", FakeTime64, &realTime64},
        {"GetSystemTimeAsFileTime", FakeGetSystemTimeAsFileTime, &realGetSystemTimeAsFileTime},
        {"QueryPerformanceCounter", FakeQueryPerformanceCounter, &realQueryPerformanceCounter},
    });
}

}  // namespace simulation
