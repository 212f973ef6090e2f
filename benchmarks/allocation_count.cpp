#include "allocation_count.h"

#include <cstdlib>

namespace benchmarks {
namespace {

std::size_t allocations = 0;
decltype(::malloc)* realMalloc = nullptr;

void* CountingMalloc(std::size_t size) {
    ++allocations;
    return realMalloc(size);
}

}  // namespace

AllocationCount::AllocationCount() {
    allocations = 0;
    realMalloc = redirection.Redirect<decltype(::malloc)>("malloc", &CountingMalloc);
}

std::size_t AllocationCount::Get() const { return allocations; }

}  // namespace benchmarks
