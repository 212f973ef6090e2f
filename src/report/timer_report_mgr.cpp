#include "report/timer_report_mgr.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "report/log_line.h"

namespace {

constexpr char kRegisterName[] = "TimerReportMgr::RegisterReportCallback";
constexpr char kLoopName[] = "TimerReportMgr::Start::<lambda_1>::operator ()";

/// The library's share in the manager. It stops the loop before it lets go, also when the host
/// never called Stop.
struct InstanceHolder {
    std::shared_ptr<TimerReportMgr> manager = std::make_shared<TimerReportMgr>();

    InstanceHolder() = default;
    InstanceHolder(const InstanceHolder&) = delete;
    InstanceHolder& operator=(const InstanceHolder&) = delete;
    ~InstanceHolder() { manager->Stop(); }
};

}  // namespace

TimerReportMgr& TimerReportMgr::GetInstance() {
    static const InstanceHolder holder;
    return *holder.manager;
}

void TimerReportMgr::RegisterReportCallback(Callback callback, std::int32_t intervalHours) {
    WriteLogLine(LOG_LEVEL_NORMAL, kRegisterName, "Register timer:", intervalHours);
    if (intervalHours <= 0) {
        WriteLogLine(LOG_LEVEL_NORMAL, kRegisterName, "Register timer invalid");
        return;
    }
    const std::lock_guard<std::mutex> lock(registerMutex_);
    timers_.push_back({std::move(callback), intervalHours});
    if (minIntervalHours_ == 0 || intervalHours < minIntervalHours_) {
        minIntervalHours_ = intervalHours;
    }
    UpdateTick();
}

void TimerReportMgr::UpdateTick() {
    const auto dividesAllIntervals = [this](std::int32_t hours) {
        return std::all_of(timers_.begin(), timers_.end(), [hours](const TimerEntry& entry) {
            return entry.intervalHours % hours == 0;
        });
    };
    tickHours_ = minIntervalHours_;
    while (!dividesAllIntervals(tickHours_)) {
        --tickHours_;
    }
}

void TimerReportMgr::Start() {
    if (timers_.empty()) {
        return;
    }
    moduleReference_ = ReferenceThisModule();
    thread_ = std::thread([self = shared_from_this()] { self->Loop(); });
}

void TimerReportMgr::Loop() {
    std::int32_t elapsedHours = 0;
    while (running_) {
        WriteLogLine(LOG_LEVEL_NORMAL, kLoopName, "BigdataTimerReportFrame loop");
        std::unique_lock<std::mutex> lock(waitMutex_);
        const auto deadline = std::chrono::system_clock::now() + std::chrono::hours(tickHours_);
        // No predicate: whatever ends the wait early, a full tick begins anew.
        if (wakeCond_.wait_until(lock, deadline) == std::cv_status::no_timeout) {
            continue;
        }
        elapsedHours += tickHours_;
        for (const TimerEntry& entry : timers_) {
            if (elapsedHours % entry.intervalHours == 0 && entry.callback) {
                entry.callback();
            }
        }
    }
}

void TimerReportMgr::Stop() {
    running_ = false;
    wakeCond_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
    moduleReference_.Reset();
}
