#include "library/module/module_image.h"

#include <algorithm>
#include <cctype>

namespace module_test {
namespace {

template <class Structure>
const Structure* At(HMODULE module, DWORD offset) {
    return reinterpret_cast<const Structure*>(reinterpret_cast<const BYTE*>(module) + offset);
}

template <class Structure>
const Structure* Directory(HMODULE module, unsigned entry) {
    const IMAGE_DATA_DIRECTORY& directory =
        ImageHeaders(module).OptionalHeader.DataDirectory[entry];
    return directory.Size == 0 ? nullptr : At<Structure>(module, directory.VirtualAddress);
}

}  // namespace

const IMAGE_NT_HEADERS& ImageHeaders(HMODULE module) {
    const auto* dosHeader = At<IMAGE_DOS_HEADER>(module, 0);
    return *At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dosHeader->e_lfanew));
}

std::vector<std::string> ExportedNames(HMODULE module) {
    const auto* exports = Directory<IMAGE_EXPORT_DIRECTORY>(module, IMAGE_DIRECTORY_ENTRY_EXPORT);
    std::vector<std::string> names;
    if (exports == nullptr) {
        return names;
    }
    const auto* nameOffsets = At<DWORD>(module, exports->AddressOfNames);
    const auto* nameOrdinals = At<WORD>(module, exports->AddressOfNameOrdinals);
    const auto* functions = At<DWORD>(module, exports->AddressOfFunctions);
    std::vector<bool> named(exports->NumberOfFunctions, false);
    for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
        names.emplace_back(At<char>(module, nameOffsets[i]));
        named.at(nameOrdinals[i]) = true;
    }
    for (DWORD i = 0; i < exports->NumberOfFunctions; ++i) {
        if (!named[i] && functions[i] != 0) {
            names.push_back("#" + std::to_string(exports->Base + i));
        }
    }
    return names;
}

std::vector<IMAGE_SECTION_HEADER> Sections(HMODULE module) {
    const IMAGE_NT_HEADERS& headers = ImageHeaders(module);
    const IMAGE_SECTION_HEADER* const first = IMAGE_FIRST_SECTION(&headers);
    return {first, first + headers.FileHeader.NumberOfSections};
}

std::string_view Contents(HMODULE module, const IMAGE_SECTION_HEADER& section) {
    return {At<char>(module, section.VirtualAddress), section.Misc.VirtualSize};
}

std::size_t CountOfImportsByOrdinal(HMODULE module) {
    std::size_t count = 0;
    const auto* descriptor =
        Directory<IMAGE_IMPORT_DESCRIPTOR>(module, IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; descriptor != nullptr && descriptor->Name != 0; ++descriptor) {
        const auto* lookup = At<IMAGE_THUNK_DATA>(module, descriptor->OriginalFirstThunk);
        for (; lookup->u1.AddressOfData != 0; ++lookup) {
            count += IMAGE_SNAP_BY_ORDINAL(lookup->u1.Ordinal) ? 1 : 0;
        }
    }
    return count;
}

std::vector<std::string> ImportedLibraries(HMODULE module) {
    std::vector<std::string> libraries;
    const auto* descriptor =
        Directory<IMAGE_IMPORT_DESCRIPTOR>(module, IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; descriptor != nullptr && descriptor->Name != 0; ++descriptor) {
        std::string library = At<char>(module, descriptor->Name);
        std::transform(library.begin(), library.end(), library.begin(), [](unsigned char letter) {
            return static_cast<char>(std::tolower(letter));
        });
        libraries.push_back(std::move(library));
    }
    return libraries;
}

}  // namespace module_test
