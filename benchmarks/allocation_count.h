// How often the heap is asked for a block: the same each time, however busy the machine is.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdlib>

#include "simulation/import_redirection.h"

namespace benchmarks {

/// The program's calls of malloc during `work`. On one thread.
template <class Work>
double CountAllocations(Work& work) {
    static std::size_t allocations = 0;
    static decltype(::malloc)* realMalloc = nullptr;
    simulation::ImportRedirection redirection(GetModuleHandleW(nullptr));
    realMalloc = redirection.Redirect<decltype(::malloc)>("malloc", [](std::size_t size) {
        ++allocations;
        return realMalloc(size);
    });
    allocations = 0;
    work();
    return static_cast<double>(allocations);
}

}  // namespace benchmarks
