// Memory that is not zero by chance, for tests of code that has to clear its buffers.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "simulation/import_redirection.h"

namespace console_user_test {

constexpr int kDirt = 0xCC;

/// While it lives, malloc, and with it the operators new, hands this program blocks full of dirt.
/// One at a time.
class DirtyHeap {
public:
    DirtyHeap() { realMalloc = redirection.Redirect<decltype(::malloc)>("malloc", DirtyMalloc); }

private:
    static void* __cdecl DirtyMalloc(std::size_t size) {
        void* const block = realMalloc(size);
        return block == nullptr ? nullptr : std::memset(block, kDirt, size);
    }

    static inline decltype(::malloc)* realMalloc = nullptr;
    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

/// Leaves dirt on the stack where the next function called will have its variables.
inline void DirtyTheStack() {
    BYTE dirt[16 * 1024];
    // Through a pointer that the optimiser knows nothing about, so that it does not leave this out.
    static void* (*volatile const fill)(void*, int, std::size_t) = &std::memset;
    fill(dirt, kDirt, sizeof(dirt));
}

}  // namespace console_user_test
