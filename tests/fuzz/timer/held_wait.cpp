#include "fuzz/timer/held_wait.h"

#include <windows.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>

#include "support/comes_true.h"
#include "support/timer_internals.h"

namespace {

using std::chrono::steady_clock;
using std::chrono::system_clock;

std::atomic<bool> held{false};
std::atomic<bool> tickIsOver{false};
std::atomic<std::chrono::milliseconds> wall{};
std::atomic<std::chrono::milliseconds> steady{};

HANDLE LoopReachedItsWait() {
    static const HANDLE event = CreateEventW(nullptr, /*bManualReset=*/FALSE, FALSE, nullptr);
    return event;
}

}  // namespace

// The linker's own names, which contain what is otherwise reserved.
extern "C" {

int __real_pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const timespec*);
system_clock::time_point __real__ZNSt6chrono3_V212system_clock3nowEv();
steady_clock::time_point __real__ZNSt6chrono3_V212steady_clock3nowEv();

int __wrap_pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                  const timespec* until) {
    if (!held) {
        return __real_pthread_cond_timedwait(condition, mutex, until);
    }
    SetEvent(LoopReachedItsWait());
    const int result = pthread_cond_wait(condition, mutex);
    return tickIsOver.exchange(false) ? ETIMEDOUT : result;
}

system_clock::time_point __wrap__ZNSt6chrono3_V212system_clock3nowEv() {
    return held ? system_clock::time_point(wall.load())
                : __real__ZNSt6chrono3_V212system_clock3nowEv();
}

steady_clock::time_point __wrap__ZNSt6chrono3_V212steady_clock3nowEv() {
    return held ? steady_clock::time_point(steady.load())
                : __real__ZNSt6chrono3_V212steady_clock3nowEv();
}

}  // extern "C"

namespace fuzz {

HeldWait::HeldWait() {
    wall = std::chrono::hours(490'000);
    steady = std::chrono::hours(1);
    ResetEvent(LoopReachedItsWait());
    held = true;
}

HeldWait::~HeldWait() { held = false; }

bool HeldWait::LoopWaits(TimerReportMgr& manager) {
    // It gives its lock away only once it can be woken.
    return test_support::WaitForSignal(LoopReachedItsWait()) &&
           std::unique_lock(manager.*Address(test_support::WaitMutex{})).owns_lock();
}

void HeldWait::Move(std::chrono::milliseconds byWall, std::chrono::milliseconds bySteady) {
    wall = wall.load() + byWall;
    steady = steady.load() + bySteady;
}

void HeldWait::TimeOut(TimerReportMgr& manager) {
    tickIsOver = true;
    Wake(manager);
}

void HeldWait::Wake(TimerReportMgr& manager) { test_support::WakeSpuriously(manager); }

}  // namespace fuzz
