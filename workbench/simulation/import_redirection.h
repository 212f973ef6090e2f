// The seam between the plug-in and the operating system: the import table of a loaded module.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace simulation {

/// One function that a module imports by name.
struct Import {
    std::string library;
    std::string name;
};

/// Everything that `module` imports by name, in table order. Imports by ordinal are left out.
std::vector<Import> ImportsOf(HMODULE module);

/// What is to be called instead of an import.
struct Replacement {
    /// `originalFunction` receives what was called before; null where the module lacks the import.
    template <class Function>
    Replacement(const char* importName, Function* replacement, Function** originalFunction)
        : name(importName),
          function(reinterpret_cast<void*>(replacement)),
          original(originalFunction) {}

    const char* name;
    void* function;
    void* original;  ///< The address of a pointer to a function; may be null.
};

/// A replacement that never passes a call on; the compiler checks its signature all the same:
/// `Replace<decltype(::ClosePrinter)>("ClosePrinter", FakeClosePrinter)`
template <class Function>
Replacement Replace(const char* name, Function* replacement) {
    return {name, replacement, static_cast<Function**>(nullptr)};
}

/// Makes a loaded module call other functions than those it was linked to. Only calls that the
/// module itself makes are affected. The destructor puts everything back, in reverse order, so the
/// module must still be loaded then. Used from one thread; the module may run meanwhile.
class ImportRedirection {
public:
    explicit ImportRedirection(HMODULE loadedModule);
    ~ImportRedirection();
    ImportRedirection(const ImportRedirection&) = delete;
    ImportRedirection& operator=(const ImportRedirection&) = delete;

    bool Imports(std::string_view name) const;

    /// Sends calls of the import `name` to `replacement`; returns what was called before. Throws
    /// std::invalid_argument naming import and module when the module has no such import.
    void* Redirect(std::string_view name, void* replacement);

    /// The same with the signature checked by the compiler; gives the original for passing on:
    /// `real = redirection.Redirect<decltype(::CloseHandle)>("CloseHandle", FakeCloseHandle);`
    template <class Function>
    std::remove_reference_t<Function>* Redirect(std::string_view name,
                                                std::remove_reference_t<Function>* replacement) {
        return reinterpret_cast<std::remove_reference_t<Function>*>(
            Redirect(name, reinterpret_cast<void*>(replacement)));
    }

    /// As above where the module imports `name`; elsewhere does nothing and returns null.
    template <class Function>
    std::remove_reference_t<Function>* RedirectIfImported(
        std::string_view name, std::remove_reference_t<Function>* replacement) {
        return Imports(name) ? Redirect<Function>(name, replacement) : nullptr;
    }

    /// Redirects those of the imports that the module has.
    void RedirectImported(std::initializer_list<Replacement> replacements);

private:
    struct Change {
        void** slot;
        void* original;
    };

    HMODULE module;
    std::vector<Change> changes;
};

}  // namespace simulation
