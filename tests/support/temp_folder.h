// A folder for the files of one test.
#pragma once

#include <string>

namespace test_support {

/// An empty folder below the user's folder for temporary files; removed with its content at the
/// end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::wstring& Path() const { return path; }
    /// Copies a file into the folder under its own name; returns the copy's path. Throws
    /// std::runtime_error naming the file.
    std::wstring Take(const std::wstring& file) const;

private:
    std::wstring path;
};

}  // namespace test_support
