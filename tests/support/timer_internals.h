// Members of the timer manager that tests look into.
#pragma once

#include "report/timer_report_mgr.h"

namespace test_support {

/// An explicit instantiation may name private members; this one makes the member's address
/// available to the test, and the class needs no friend:
///
///     struct Tick {
///         friend auto Address(Tick);
///     };
///     template struct test_support::PrivateMember<Tick, &TimerReportMgr::tickHours_>;
///
///     std::int32_t tick = manager.*Address(Tick{});
template <class Tag, auto Pointer>
struct PrivateMember {
    friend auto Address(Tag) { return Pointer; }
};

struct TickHours {
    friend auto Address(TickHours);
};
template struct PrivateMember<TickHours, &TimerReportMgr::tickHours_>;

struct WakeCondition {
    friend auto Address(WakeCondition);
};
template struct PrivateMember<WakeCondition, &TimerReportMgr::wakeCond_>;

struct LoopThread {
    friend auto Address(LoopThread);
};
template struct PrivateMember<LoopThread, &TimerReportMgr::thread_>;

struct RunningFlag {
    friend auto Address(RunningFlag);
};
template struct PrivateMember<RunningFlag, &TimerReportMgr::running_>;

struct WaitMutex {
    friend auto Address(WaitMutex);
};
template struct PrivateMember<WaitMutex, &TimerReportMgr::waitMutex_>;

inline std::int32_t TickHoursOf(TimerReportMgr& manager) { return manager.*Address(TickHours{}); }

/// Wakes the loop as the system may do at any time without a reason.
inline void WakeSpuriously(TimerReportMgr& manager) {
    (manager.*Address(WakeCondition{})).notify_all();
}

/// False from the first moment of Stop on.
inline bool IsRunning(const TimerReportMgr& manager) { return manager.*Address(RunningFlag{}); }

/// Whether nobody holds the lock of the loop's wait. Not for a thread that may hold it itself.
inline bool IsWaitLockFree(TimerReportMgr& manager) {
    return std::unique_lock<std::mutex>(manager.*Address(WaitMutex{}), std::try_to_lock)
        .owns_lock();
}

inline bool HasLoopThread(TimerReportMgr& manager) {
    return (manager.*Address(LoopThread{})).joinable();
}

}  // namespace test_support
