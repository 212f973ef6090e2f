// What the headers of a loaded module say.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace module_test {

const IMAGE_NT_HEADERS& ImageHeaders(HMODULE module);

/// Names in the export table, sorted as they stand there. Exports by ordinal only come as "#17".
std::vector<std::string> ExportedNames(HMODULE module);

/// The sections' headers, in the image's order.
std::vector<IMAGE_SECTION_HEADER> Sections(HMODULE module);

/// What the section holds in memory.
std::string_view Contents(HMODULE module, const IMAGE_SECTION_HEADER& section);

/// How many imports have no name but a number.
std::size_t CountOfImportsByOrdinal(HMODULE module);

/// The libraries that the module is linked to, in lower case and in the table's order.
std::vector<std::string> ImportedLibraries(HMODULE module);

}  // namespace module_test
