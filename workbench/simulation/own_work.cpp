#include "simulation/own_work.h"

#include <windows.h>

#include <cstdint>

namespace simulation {
namespace {

/// How deep the thread is in such work, changed by `change`. It is kept in a slot of the system's
/// own: the compiler's thread-local variables take memory at first use, which would lead back into
/// the fake that asks.
std::intptr_t Depth(std::intptr_t change) {
    // Reading a slot resets the last error.
    const DWORD error = GetLastError();
    static const DWORD slot = TlsAlloc();
    auto depth = reinterpret_cast<std::intptr_t>(TlsGetValue(slot));
    if (change != 0) {
        depth += change;
        TlsSetValue(slot, reinterpret_cast<void*>(depth));
    }
    SetLastError(error);
    return depth;
}

}  // namespace

OwnWork::OwnWork() { Depth(+1); }

OwnWork::~OwnWork() { Depth(-1); }

bool OwnWork::UnderWay() { return Depth(0) != 0; }

}  // namespace simulation
