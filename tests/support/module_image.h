// What the headers of a loaded module say.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace test_support {

const IMAGE_NT_HEADERS& ImageHeaders(HMODULE module);

/// Names in the export table, sorted as they stand there. Exports by ordinal only come as "#17".
std::vector<std::string> ExportedNames(HMODULE module);

/// The libraries that the module is linked to, in lower case and in the table's order.
std::vector<std::string> ImportedLibraries(HMODULE module);

}  // namespace test_support
