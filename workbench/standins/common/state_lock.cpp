#include "standins/common/state_lock.h"

// Exported and documented by the system, but in no header of the toolchain.
extern "C" __declspec(dllimport) BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace standins {

bool ProcessIsEnding() { return RtlDllShutdownInProgress() != FALSE; }

ExclusiveLock::ExclusiveLock(SRWLOCK& lockToHold) : lock(lockToHold) {
    if (ProcessIsEnding()) {
        held = TryAcquireSRWLockExclusive(&lock) != 0;
    } else {
        AcquireSRWLockExclusive(&lock);
    }
}

ExclusiveLock::~ExclusiveLock() {
    if (held) {
        ReleaseSRWLockExclusive(&lock);
    }
}

SharedLock::SharedLock(SRWLOCK& lockToHold) : lock(lockToHold) {
    if (ProcessIsEnding()) {
        held = TryAcquireSRWLockShared(&lock) != 0;
    } else {
        AcquireSRWLockShared(&lock);
    }
}

SharedLock::~SharedLock() {
    if (held) {
        ReleaseSRWLockShared(&lock);
    }
}

}  // namespace standins
