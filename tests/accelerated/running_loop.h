// The timer loop on a clock on which an hour takes a tenth of a second. How often callbacks run is
// exact; a busy machine only makes the waits longer, never shorter.
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/loop_wait_probe.h"
#include "support/recorded_log.h"
#include "support/timer_internals.h"

namespace timer_loop_test {

using std::chrono::hours;
using test_support::Happening;
using Clock = std::chrono::system_clock;
using Texts = std::vector<std::string>;

inline constexpr char kLoopLine[] =
    "log 3 BigdataTimerReportFrame loop(TimerReportMgr::Start::<lambda_1>::operator ())";

/// Longer than any test needs: a hundred seconds of real time.
inline constexpr hours kPatience{1000};

class RunningLoop : public testing::Test {
protected:
    /// A callback that notes its name.
    void Register(const std::string& name, int intervalHours) {
        manager.RegisterReportCallback([this, name] { timeline.Note(name); }, intervalHours);
    }

    /// Starts and waits until the callback ran so many times. Then nothing else is noted any more
    /// than what the tick that is under way still runs.
    void RunUntil(const std::string& name, std::size_t count) {
        timeline.Clear();
        manager.Start();
        ASSERT_TRUE(timeline.WaitFor(name, count, kPatience));
    }

    /// What the loop did in the first `ticks` ticks: the callbacks of each, joined by blanks.
    Texts Ticks(std::size_t ticks) const {
        Texts result;
        for (const std::string& text : timeline.Texts()) {
            if (text == kLoopLine) {
                result.emplace_back();
            } else if (!result.empty()) {
                result.back() += (result.back().empty() ? "" : " ") + text;
            }
        }
        result.resize(ticks);
        return result;
    }

    Clock::time_point TimeOf(const std::string& text, std::size_t occurrence = 0) const {
        for (const Happening& happening : timeline.Happenings()) {
            if (happening.text == text && occurrence-- == 0) {
                return happening.time;
            }
        }
        ADD_FAILURE() << text << " did not happen that often";
        return {};
    }

    test_support::Timeline timeline;
    test_support::RecordedLog log{timeline};
    TimerReportMgr manager;
};

}  // namespace timer_loop_test
