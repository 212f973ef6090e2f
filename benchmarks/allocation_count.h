// How often the heap is asked for a block: the same each time, however busy the machine is.
#pragma once

#include <windows.h>

#include <cstddef>

#include "simulation/import_redirection.h"

namespace benchmarks {

/// Counts the program's calls of malloc while it lives. One at a time, on one thread.
class AllocationCount {
public:
    AllocationCount();

    std::size_t Get() const;

private:
    simulation::ImportRedirection redirection{GetModuleHandleW(nullptr)};
};

template <class Work>
double CountAllocations(Work& work) {
    const AllocationCount count;
    work();
    return static_cast<double>(count.Get());
}

}  // namespace benchmarks
