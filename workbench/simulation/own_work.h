// Tells what the simulation does on a thread from what the simulated module does there.
#pragma once

namespace simulation {

/// Marks the thread as busy with the simulation's own work while it lives. Where the module and the
/// simulation are parts of one program, they also share its imports, and a fake of a function that
/// the simulation needs itself has to know for whom it is called. May be nested; the thread's last
/// error stays. What the real system calls back from within a fake counts as the simulation's.
class OwnWork {
public:
    OwnWork();
    ~OwnWork();
    OwnWork(const OwnWork&) = delete;
    OwnWork& operator=(const OwnWork&) = delete;

    /// On the calling thread. Takes no memory.
    static bool UnderWay();
};

}  // namespace simulation
