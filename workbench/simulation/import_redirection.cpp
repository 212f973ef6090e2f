#include "simulation/import_redirection.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace simulation {
namespace {

/// Some linkers align the tables of imports to four bytes only.
template <class Value>
Value ReadUnaligned(const Value* place) {
    Value value;
    std::memcpy(&value, static_cast<const void*>(place), sizeof(value));
    return value;
}

/// Calls `visit(library, name, slot)` for every import by name. A slot is where the loader put the
/// function's address and where the module's code reads it at each call.
template <class Visitor>
void VisitImports(HMODULE module, Visitor visit) {
    BYTE* const base = reinterpret_cast<BYTE*>(module);
    const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dosHeader->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0) {
        return;
    }
    const auto* descriptor =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; descriptor->Name != 0; ++descriptor) {
        if (descriptor->OriginalFirstThunk == 0) {
            continue;  // The names were overwritten by the addresses.
        }
        const auto* library = reinterpret_cast<const char*>(base + descriptor->Name);
        const auto* lookup =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(base + descriptor->OriginalFirstThunk);
        auto** slot = reinterpret_cast<void**>(base + descriptor->FirstThunk);
        for (;; ++lookup, ++slot) {
            const ULONGLONG import = ReadUnaligned(lookup).u1.AddressOfData;
            if (import == 0) {
                break;
            }
            if (IMAGE_SNAP_BY_ORDINAL(import)) {
                continue;
            }
            const auto* byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + import);
            visit(library, reinterpret_cast<const char*>(byName->Name), slot);
        }
    }
}

/// All slots of one import: a linker may list a library, and so a function, more than once.
std::vector<void**> SlotsOf(HMODULE module, std::string_view name) {
    std::vector<void**> slots;
    VisitImports(module, [&](const char*, const char* slotName, void** slot) {
        if (slotName == name) {
            slots.push_back(slot);
        }
    });
    return slots;
}

bool WriteSlot(void** slot, void* function) {
    DWORD protection = 0;
    if (VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection) == FALSE) {
        return false;
    }
    // Other threads call through the slot meanwhile.
    InterlockedExchangePointer(slot, function);
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
    return true;
}

std::string FileNameOf(HMODULE module) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, MAX_PATH - 1);
    const std::string text = path;
    return text.substr(text.find_last_of('\\') + 1);
}

}  // namespace

std::vector<Import> ImportsOf(HMODULE module) {
    std::vector<Import> imports;
    VisitImports(module, [&](const char* library, const char* name, void**) {
        imports.push_back({library, name});
    });
    return imports;
}

ImportRedirection::ImportRedirection(HMODULE loadedModule) : module(loadedModule) {}

ImportRedirection::~ImportRedirection() {
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        if (!WriteSlot(change->slot, change->original)) {
            std::fputs("A module was unloaded before its imports were put back.\n", stderr);
            std::abort();
        }
    }
}

bool ImportRedirection::Imports(std::string_view name) const {
    return !SlotsOf(module, name).empty();
}

void* ImportRedirection::Redirect(std::string_view name, void* replacement) {
    const std::vector<void**> slots = SlotsOf(module, name);
    if (slots.empty()) {
        throw std::invalid_argument(FileNameOf(module) + " does not import \"" + std::string(name) +
                                    "\"");
    }
    void* const original = ReadUnaligned(slots.front());
    changes.reserve(changes.size() + slots.size());
    for (void** slot : slots) {
        void* const before = ReadUnaligned(slot);
        if (!WriteSlot(slot, replacement)) {
            throw std::runtime_error("the import table cannot be made writable, error " +
                                     std::to_string(GetLastError()));
        }
        changes.push_back({slot, before});
    }
    return original;
}

void ImportRedirection::RedirectImported(std::initializer_list<Replacement> replacements) {
    for (const Replacement& replacement : replacements) {
        void* const original =
            Imports(replacement.name) ? Redirect(replacement.name, replacement.function) : nullptr;
        if (replacement.original != nullptr) {
            std::memcpy(replacement.original, &original, sizeof(original));
        }
    }
}

}  // namespace simulation
