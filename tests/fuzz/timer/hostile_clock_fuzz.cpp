// The timer loop in a machine whose clocks are set and slewed, that sleeps, wakes threads for
// nothing, and stops the loop at any moment.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <numeric>
#include <ostream>
#include <system_error>
#include <vector>

#include "fuzz/campaign.h"
#include "fuzz/timer/held_wait.h"
#include "standins/log_kit/log_kit_control.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// Of a wait.
enum class End { TimeOut, WakeForNothing, Stop };

/// What the clocks say has passed during a wait, and how the wait ends.
struct Wait {
    bool stopComesBefore = false;  ///< Between the loop's look for a Stop and the wait.
    milliseconds wall{0};
    milliseconds steady{0};
    End end = End::TimeOut;
};

/// From Start until a Stop.
struct Story {
    std::vector<std::int32_t> intervals;
    std::vector<Wait> waits;

    std::int32_t TickHours() const {
        return std::accumulate(intervals.begin(), intervals.end(), 0, std::gcd<int, int>);
    }
};

void PrintTo(const Story& story, std::ostream* stream) {
    *stream << "callbacks every " << testing::PrintToString(story.intervals) << " hours";
    for (const Wait& wait : story.waits) {
        *stream << (wait.stopComesBefore ? "; Stop" : "") << "; a wait of " << wait.wall.count()
                << " ms by the wall clock, " << wait.steady.count() << " ms by the steady one, "
                << (wait.end == End::TimeOut ? "times out"
                    : wait.end == End::Stop  ? "ended by Stop"
                                             : "ended by nothing");
    }
}

Wait MakeWait(fuzz::Random& random, milliseconds tick) {
    Wait wait;
    milliseconds rest = tick;  // Of the wait's own time, which no clock shows.
    const auto someOf = [&](milliseconds span) {
        return milliseconds(random.Below(static_cast<std::size_t>(span.count()) + 1));
    };
    const auto pass = [&](milliseconds span, milliseconds slewedBy = 0ms) {
        rest -= span;
        wait.wall += span + slewedBy;
        wait.steady += span;
    };
    for (std::size_t left = random.Below(4); left > 0; --left) {
        const milliseconds span = someOf(rest);
        const milliseconds jump = someOf(3 * tick);
        switch (random.Below(5)) {
            case 0:
                pass(span);
                break;
            case 1:
                pass(span, random.OneIn(2) ? span / 20 : -span / 20);
                break;
            case 2:
                wait.wall += jump;
                break;
            case 3:
                wait.wall -= jump;
                break;
            default:  // The machine sleeps.
                wait.wall += jump;
                wait.steady += jump;
        }
    }
    if (random.OneIn(4)) {
        pass(std::max(rest - someOf(20s), 0ms));  // To the wait's last seconds.
    }
    wait.end = random.OneIn(2) ? End::TimeOut : End::WakeForNothing;
    if (wait.end == End::TimeOut) {
        pass(rest);
        wait.steady -= someOf(9s);  // What the steady clock loses against the wait.
    }
    return wait;
}

Story MakeStory(fuzz::Random& random) {
    Story story;
    for (std::size_t left = random.Between(1, 3); left > 0; --left) {
        story.intervals.push_back(static_cast<std::int32_t>(random.Between(1, 6)));
    }
    for (std::size_t left = random.Between(1, 6); left > 0; --left) {
        story.waits.push_back(MakeWait(random, std::chrono::hours(story.TickHours())));
    }
    Wait& last = story.waits.back();
    last.stopComesBefore = random.OneIn(3);
    if (!last.stopComesBefore) {
        last.end = End::Stop;
    }
    return story;
}

/// Which callbacks have to run: their places, in order.
struct Model {
    std::vector<std::int32_t> intervals;
    std::int32_t tickHours;
    std::int32_t hours = 0;
    std::vector<std::size_t> ran{};

    void After(const Wait& wait) {
        const std::chrono::hours tick(tickHours);
        const bool tickIsOver = wait.wall >= tick || wait.steady >= tick - 10s;
        if (wait.end == End::Stop || !tickIsOver) {
            return;
        }
        hours += tickHours;
        for (std::size_t i = 0; i < intervals.size(); ++i) {
            if (hours % intervals[i] == 0) {
                ran.push_back(i);
            }
        }
    }
};

/// Stops the loop on its own thread where it writes its line: after its look for a Stop and before
/// its wait.
class StopBeforeTheWait {
public:
    explicit StopBeforeTheWait(TimerReportMgr& managerOfLoop) : manager(managerOfLoop) {
        LogKit_SetSink(&OnLine, this);
    }
    ~StopBeforeTheWait() { LogKit_SetSink(nullptr, nullptr); }
    StopBeforeTheWait(const StopBeforeTheWait&) = delete;
    StopBeforeTheWait& operator=(const StopBeforeTheWait&) = delete;

    std::atomic<bool> isDue{false};

private:
    static void OnLine(void* context, int /*level*/, const wchar_t* /*text*/) {
        StopBeforeTheWait& self = *static_cast<StopBeforeTheWait*>(context);
        if (!self.isDue.exchange(false)) {
            return;
        }
        try {
            self.manager.Stop();
        } catch (const std::system_error&) {
            // No thread can join itself, which is the last that Stop does.
        }
    }

    TimerReportMgr& manager;
};

void CheckStory(const Story& story) {
    const fuzz::HeldWait held;
    std::vector<std::size_t> ran;
    TimerReportMgr manager;
    StopBeforeTheWait stop(manager);
    for (std::size_t i = 0; i < story.intervals.size(); ++i) {
        manager.RegisterReportCallback([&ran, i] { ran.push_back(i); }, story.intervals[i]);
    }
    Model model{story.intervals, story.TickHours()};
    stop.isDue = story.waits.front().stopComesBefore;
    manager.Start();
    for (auto wait = story.waits.begin(); wait != story.waits.end(); ++wait) {
        fuzz::Require(fuzz::HeldWait::LoopWaits(manager), "the loop does not wait");
        fuzz::RequireSame(ran, model.ran, "callbacks that ran before a wait");
        stop.isDue = wait + 1 != story.waits.end() && (wait + 1)->stopComesBefore;
        fuzz::HeldWait::Move(wait->wall, wait->steady);
        if (wait->end == End::Stop) {
            manager.Stop();
        } else if (wait->end == End::TimeOut) {
            fuzz::HeldWait::TimeOut(manager);
        } else {
            fuzz::HeldWait::Wake(manager);
        }
        model.After(*wait);
    }
    manager.Stop();
    fuzz::RequireSame(ran, model.ran, "callbacks that ran until the loop ended");
}

TEST(HostileClock, MakesTheLoopRunWhatIsDueAndNothingInsideStop) {
    fuzz::TryInputs("stories of the timer loop under a hostile clock", 10000, &MakeStory,
                    &CheckStory);
}

}  // namespace
