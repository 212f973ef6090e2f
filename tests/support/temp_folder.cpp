#include "support/temp_folder.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>

namespace test_support {

TempFolder::TempFolder() {
    static unsigned number = 0;
    path = (std::filesystem::temp_directory_path() /
            (L"tallyport-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
             std::to_wstring(++number)))
               .wstring();
    std::filesystem::create_directories(path);
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::wstring TempFolder::Take(const std::wstring& file) const {
    const std::filesystem::path source(file);
    const std::filesystem::path copy = std::filesystem::path(path) / source.filename();
    std::filesystem::copy_file(source, copy);
    return copy.wstring();
}

}  // namespace test_support
