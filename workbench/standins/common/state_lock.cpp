#include "standins/common/state_lock.h"

// Exported and documented by the system, but in no header of the toolchain.
extern "C" __declspec(dllimport) BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace standins {

bool ProcessIsEnding() { return RtlDllShutdownInProgress() != FALSE; }

StateLock::StateLock(SRWLOCK& lock, bool shared) : lock_(lock), shared_(shared) {
    if (ProcessIsEnding()) {
        held_ =
            (shared_ ? TryAcquireSRWLockShared(&lock_) : TryAcquireSRWLockExclusive(&lock_)) != 0;
    } else {
        shared_ ? AcquireSRWLockShared(&lock_) : AcquireSRWLockExclusive(&lock_);
    }
}

StateLock::~StateLock() {
    if (held_) {
        shared_ ? ReleaseSRWLockShared(&lock_) : ReleaseSRWLockExclusive(&lock_);
    }
}

}  // namespace standins
