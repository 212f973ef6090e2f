// Refusals of the heap that the simulated module allocates from.
#pragma once

#include <cstddef>

namespace simulation {

/// While it lives, the simulated module's malloc and calloc, and with them the operators new,
/// refuse every block of exactly `size` bytes. What the fakes themselves need is served all the
/// same. There is one at a time; it may be made before or after the simulated machine.
class MallocFailure {
public:
    explicit MallocFailure(std::size_t size);
    ~MallocFailure();
    MallocFailure(const MallocFailure&) = delete;
    MallocFailure& operator=(const MallocFailure&) = delete;

    /// How many blocks were refused so far.
    unsigned Count() const;
};

}  // namespace simulation
