// Where the stand-ins write text: standard streams and files.
#pragma once

#include <windows.h>

#include <string_view>

#include "util/scoped_file.h"

namespace standins {

/// Writes the line and a line feed to STD_OUTPUT_HANDLE or STD_ERROR_HANDLE: as UTF-8, or as wide
/// text to a console, whose code page then does not matter. The system is asked for the stream each
/// time and nothing is buffered, so a redirection takes effect at once. Failures are ignored.
void WriteStandardLine(DWORD stream, std::wstring_view line);

/// A text file that grows by whole lines. Other processes may read, append to or delete it
/// meanwhile. Not safe for several threads at once.
class LineFile {
public:
    /// Opens the file, creating it if it does not exist, and closes the previous one. Returns 0, or
    /// the Win32 error code, and then keeps the previous file.
    DWORD Open(const wchar_t* path);
    void Close() { file.Reset(); }
    bool IsOpen() const { return static_cast<bool>(file); }

    /// Appends the bytes and a line feed; does nothing while no file is open.
    void Write(std::string_view line);

private:
    ScopedFile file;
};

}  // namespace standins
