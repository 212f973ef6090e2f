// Memory blocks: the real heap serves them. The journal, the fault plan and the ledger see
// GlobalAlloc and GlobalFree; malloc is in neither, because everything calls it, but it can be made
// to refuse blocks of one size.
#pragma once

#include <cstddef>

#include "simulation/import_redirection.h"

namespace simulation {

void InstallHeapFakes(ImportRedirection& redirection);

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
