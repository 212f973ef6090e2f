#include "standins/common/text_output.h"

#include <string>
#include <utility>

#include "common/text.h"

namespace standins {
namespace {

/// In one call, so that lines of several writers do not mix.
void WriteLine(HANDLE file, std::string_view line) {
    std::string bytes(line);
    bytes += '\n';
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

void WriteStandardLine(DWORD stream, std::wstring_view line) {
    const HANDLE output = GetStdHandle(stream);
    DWORD mode = 0;
    if (!GetConsoleMode(output, &mode)) {
        WriteLine(output, workbench::ToUtf8(line));
        return;
    }
    std::wstring text(line);
    text += L'\n';
    DWORD written = 0;
    WriteConsoleW(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

DWORD LineFile::Open(const wchar_t* path) {
    ScopedFile opened(
        CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    /*lpSecurityAttributes=*/nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                    /*hTemplateFile=*/nullptr));
    if (!opened) {
        return GetLastError();
    }
    file = std::move(opened);
    return ERROR_SUCCESS;
}

void LineFile::Write(std::string_view line) {
    if (file) {
        WriteLine(file.Get(), line);
    }
}

}  // namespace standins
