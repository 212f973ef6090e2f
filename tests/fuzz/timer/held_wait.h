// The timer loop's wait and the clocks that it reads, in the hands of a test. The linker puts them
// in place of the library's own (--wrap).
#pragma once

#include <chrono>

#include "report/timer_report_mgr.h"

namespace fuzz {

/// While it lives, the two clocks stand still and waits with a time limit last until the test ends
/// them. Made and used by the test's thread; one at a time in a process.
class HeldWait {
public:
    HeldWait();
    /// The loop must be over.
    ~HeldWait();
    HeldWait(const HeldWait&) = delete;
    HeldWait& operator=(const HeldWait&) = delete;

    /// Until the loop waits, for the first time or once more. False when it does not come to that.
    static bool LoopWaits(TimerReportMgr& manager);
    static void Move(std::chrono::milliseconds wall, std::chrono::milliseconds steady);
    /// Ends the wait, by its limit or by nothing at all.
    static void TimeOut(TimerReportMgr& manager);
    static void Wake(TimerReportMgr& manager);
};

}  // namespace fuzz
