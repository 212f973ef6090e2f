// The scheduler of periodic reports.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "util/scoped_handle.h"

/// Runs callbacks at intervals of whole hours on one loop thread.
///
/// The loop wakes once per tick, the greatest common divisor of all intervals, and runs every
/// callback whose interval divides the hours that have elapsed since Start. Callbacks run in
/// registration order and never overlap. All of them are registered before Start.
class TimerReportMgr {
public:
    using Callback = std::function<void()>;

    /// The process-wide manager. Created on first use; stopped and released when the library is
    /// unloaded. At process end the system ends the loop and the manager is left as it is.
    static TimerReportMgr& GetInstance();

    TimerReportMgr() = default;
    /// Calls Stop first, and waits as long as that.
    ~TimerReportMgr();
    TimerReportMgr(const TimerReportMgr&) = delete;
    TimerReportMgr& operator=(const TimerReportMgr&) = delete;

    /// Adds a callback that first runs one interval after Start. An interval below one hour is
    /// logged and ignored; an empty callback is kept and counts for the tick but is never run.
    /// Must not be called once the loop runs.
    void RegisterReportCallback(Callback callback, std::int32_t intervalHours);

    /// Starts the loop thread, unless nothing is registered. Calling it while the loop runs ends
    /// the process, as replacing a running std::thread does.
    void Start();

    /// Ends the loop and joins its thread, for which it waits as long as callbacks run. A Stop that
    /// falls between the loop's test and its wait takes effect when that wait times out, a tick
    /// later, and what is due then runs once more. Final: a loop started later ends at once. Must
    /// not be called from a callback.
    void Stop();

private:
    struct TimerEntry {
        Callback callback;
        std::int32_t intervalHours;
    };

    void UpdateTick();
    void Loop();
    /// Waits for the tick to pass. False when Stop ended the wait or it ended early for no reason;
    /// a wake in the last seconds of the tick counts as its end.
    bool WaitForTick(std::unique_lock<std::mutex>& lock);

    std::thread thread_;
    std::vector<TimerEntry> timers_;
    std::condition_variable wakeCond_;
    std::mutex waitMutex_;      ///< Held while the loop waits and while callbacks run.
    std::mutex registerMutex_;  ///< Held while a registration changes timers_ and the hours.
    std::atomic<bool> running_{true};
    std::int32_t tickHours_ = 1;
    std::int32_t minIntervalHours_ = 0;  ///< 0 while nothing is registered.
    ScopedModule moduleReference_;       ///< Held from Start to the end of Stop.
};

static_assert(std::atomic<bool>::is_always_lock_free);
