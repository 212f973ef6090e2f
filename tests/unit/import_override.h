// A hand-made answer to one import, for what a machine description cannot express.
#pragma once

#include <windows.h>

#include <string_view>
#include <type_traits>

#include "simulation/import_redirection.h"

namespace unit_tests {

/// While it lives, this program's calls of an import go to `replacement`. Only one at a time for
/// each function type and tag; make it behind the simulated machine, whose fake `Next` calls.
template <class Function, class Tag = Function>
class ImportOverride {
public:
    using Pointer = std::remove_reference_t<Function>*;

    ImportOverride(std::string_view name, Pointer replacement)
        : imports(GetModuleHandleW(nullptr)) {
        next = imports.Redirect<Function>(name, replacement);
    }

    /// What was called before.
    static Pointer Next() { return next; }

private:
    simulation::ImportRedirection imports;
    static inline Pointer next = nullptr;
};

}  // namespace unit_tests
