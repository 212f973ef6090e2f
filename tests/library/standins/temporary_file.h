// Files and standard streams that a test borrows.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace standins_test {

/// An empty file of its own in the temporary folder, deleted when this object goes.
class TemporaryFile {
public:
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const wchar_t* Path() const { return path.c_str(); }
    /// The whole content, byte for byte.
    std::string Bytes() const;
    /// The content's lines, each without its line feed. A last line without one is left out.
    std::vector<std::string> Lines() const;

private:
    std::wstring path;
};

/// Sends what this process writes to STD_OUTPUT_HANDLE or STD_ERROR_HANDLE into a file. The C
/// runtime's own streams, and so the test framework's output, are not affected.
class StreamCapture {
public:
    explicit StreamCapture(DWORD stream);
    ~StreamCapture();
    StreamCapture(const StreamCapture&) = delete;
    StreamCapture& operator=(const StreamCapture&) = delete;

    std::string Bytes() const { return file.Bytes(); }

private:
    TemporaryFile file;
    DWORD stream;
    HANDLE original;
    HANDLE replacement;
};

}  // namespace standins_test
