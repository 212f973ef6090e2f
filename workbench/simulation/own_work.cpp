#include "simulation/own_work.h"

#include <windows.h>

#include <cstdint>

namespace simulation {
namespace {

/// A slot of the system's own: the compiler's thread-local variables take memory at first use,
/// which would lead back into the fake that asks.
DWORD Slot() {
    static const DWORD slot = TlsAlloc();
    return slot;
}

std::uintptr_t Depth() { return reinterpret_cast<std::uintptr_t>(TlsGetValue(Slot())); }

void SetDepth(std::uintptr_t depth) { TlsSetValue(Slot(), reinterpret_cast<void*>(depth)); }

/// Reading a slot resets the last error.
class KeptLastError {
public:
    KeptLastError() : error(GetLastError()) {}
    ~KeptLastError() { SetLastError(error); }
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;

private:
    DWORD error;
};

}  // namespace

OwnWork::OwnWork() {
    const KeptLastError kept;
    SetDepth(Depth() + 1);
}

OwnWork::~OwnWork() {
    const KeptLastError kept;
    SetDepth(Depth() - 1);
}

bool OwnWork::UnderWay() {
    const KeptLastError kept;
    return Depth() != 0;
}

}  // namespace simulation
