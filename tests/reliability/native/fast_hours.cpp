// Hours that last a fraction of a millisecond: the clocks that the timer manager reads, and its
// wait. The linker puts these in place of the library's own (--wrap).
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <ctime>

namespace {

constexpr std::int64_t kHour = 3'600'000'000'000;
constexpr long kNanosecondsOfAnHour = 200'000;

std::atomic<std::int64_t> passed{0};

}  // namespace

// The linker's own names, which contain what is otherwise reserved.
extern "C" {

int __real_pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const timespec*);

int __wrap_pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                  const timespec* /*until*/) {
    timespec soon{};
    clock_gettime(CLOCK_REALTIME, &soon);
    soon.tv_nsec += kNanosecondsOfAnHour;
    soon.tv_sec += soon.tv_nsec / 1'000'000'000;
    soon.tv_nsec %= 1'000'000'000;
    const int result = __real_pthread_cond_timedwait(condition, mutex, &soon);
    if (result == ETIMEDOUT) {
        passed += kHour;
    }
    return result;
}

std::chrono::system_clock::time_point __wrap__ZNSt6chrono3_V212system_clock3nowEv() {
    return std::chrono::system_clock::time_point(std::chrono::nanoseconds(passed));
}

std::chrono::steady_clock::time_point __wrap__ZNSt6chrono3_V212steady_clock3nowEv() {
    return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(passed));
}

}  // extern "C"
