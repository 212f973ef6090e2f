// Memory behind which reading and writing ends the program.
#pragma once

#include <windows.h>

#include <cstring>
#include <new>

namespace fuzz {

/// Pages that are followed by one that may not be touched.
class GuardedMemory {
public:
    /// At most `capacity` bytes can be had at a time.
    explicit GuardedMemory(std::size_t capacity)
        : size((capacity + kPageSize - 1) / kPageSize * kPageSize),
          pages(static_cast<BYTE*>(VirtualAlloc(/*lpAddress=*/nullptr, size + kPageSize,
                                                MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        DWORD previous = 0;
        if (pages == nullptr ||
            !VirtualProtect(pages + size, kPageSize, PAGE_NOACCESS, &previous)) {
            throw std::bad_alloc();
        }
    }
    ~GuardedMemory() { VirtualFree(pages, /*dwSize=*/0, MEM_RELEASE); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    /// The last `length` bytes, zeroed. What was there before is gone.
    BYTE* Last(std::size_t length) {
        BYTE* const begin = pages + size - length;
        std::memset(begin, 0, length);
        return begin;
    }

private:
    static constexpr std::size_t kPageSize = 4096;

    const std::size_t size;
    BYTE* const pages;
};

}  // namespace fuzz
