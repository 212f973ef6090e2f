#include "report/timer_report_mgr.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "report/log_line.h"
#include "util/kept_at_process_end.h"
#include "util/module_reference.h"

namespace {

constexpr char kRegisterReportCallbackFunction[] = "TimerReportMgr::RegisterReportCallback";

/// By how much the steady clock may fall short of a tick: more than a day's drift, less than
/// anybody notices of an hour.
constexpr std::chrono::seconds kClockSlack{10};

}  // namespace

TimerReportMgr& TimerReportMgr::GetInstance() {
    static KeptAtProcessEnd<TimerReportMgr> instance;
    return *instance;
}

TimerReportMgr::~TimerReportMgr() { Stop(); }

void TimerReportMgr::RegisterReportCallback(Callback callback, std::int32_t intervalHours) {
    WriteLogLine(LOG_LEVEL_NORMAL, kRegisterReportCallbackFunction,
                 "Register timer:", intervalHours);
    if (intervalHours <= 0) {
        WriteLogLine(LOG_LEVEL_NORMAL, kRegisterReportCallbackFunction, "Register timer invalid");
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
    thread_ = std::thread(&TimerReportMgr::Loop, this);
}

void TimerReportMgr::Loop() {
    std::int32_t elapsedHours = 0;
    while (running_) {
        // Kept: the line has always named a lambda of Start.
        WriteLogLine(LOG_LEVEL_NORMAL, "TimerReportMgr::Start::<lambda_1>::operator ()",
                     "BigdataTimerReportFrame loop");
        std::unique_lock<std::mutex> lock(waitMutex_);
        // Whatever ends the wait early, a full tick begins anew.
        if (!WaitForTick(lock)) {
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

bool TimerReportMgr::WaitForTick(std::unique_lock<std::mutex>& lock) {
    const std::chrono::hours tick(tickHours_);
    const auto begin = std::chrono::steady_clock::now();
    const auto deadline = std::chrono::system_clock::now() + tick;
    // As late as can be: a Stop in the few instructions from here to the wait counts as one during
    // it.
    const bool stopCameBefore = !running_;
    const bool timedOut = wakeCond_.wait_until(lock, deadline) == std::cv_status::timeout;
    if (!running_ && !stopCameBefore) {
        // Stop ended the wait, whatever the clocks say: they go on while the machine sleeps, the
        // wait does not. Reports that a night made due must not run inside Stop.
        return false;
    }
    if (timedOut) {
        return true;
    }
    // The library decides by the wall clock what a time-out is. Where that was slewed or set back
    // during the wait, a tick would count as ended early, hour after hour.
    return std::chrono::steady_clock::now() - begin >= tick - kClockSlack;
}

void TimerReportMgr::Stop() {
    running_ = false;
    wakeCond_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
    moduleReference_.Reset();
}
