#include "host/files.h"

#include <windows.h>

#include "host/host_error.h"
#include "host/win32_error.h"
#include "standins/common/text.h"
#include "util/scoped_handle.h"

namespace host {
namespace {

struct FileTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) noexcept { CloseHandle(handle); }
};

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kNameAnother[] = "; name another file";

}  // namespace

std::wstring OwnFolder() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\'));
}

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring FullPath(std::string_view path) {
    std::wstring full(32768, L'\0');
    full.resize(GetFullPathNameW(standins::ToWide(path).c_str(), static_cast<DWORD>(full.size()),
                                 full.data(), nullptr));
    return full;
}

std::wstring ComparablePath(std::string_view path) {
    std::wstring full = FullPath(path);
    CharLowerBuffW(full.data(), static_cast<DWORD>(full.size()));
    return full;
}

std::string ReadTextFile(std::string_view path, std::string_view purpose) {
    const auto refuse = [&](DWORD error) {
        return HostError(ExitCode::BadInput, "cannot read the " + std::string(purpose) + " '" +
                                                 std::string(path) + "': " + Win32ErrorText(error) +
                                                 kNameAnother);
    };
    const ScopedHandle<FileTraits> file(CreateFileW(standins::ToWide(path).c_str(), GENERIC_READ,
                                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        throw refuse(GetLastError());
    }
    std::string text;
    char block[16384];
    DWORD count = 0;
    do {
        if (!ReadFile(file.Get(), block, sizeof(block), &count, nullptr)) {
            throw refuse(GetLastError());
        }
        text.append(block, count);
    } while (count != 0);
    if (text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
        text.erase(0, kByteOrderMark.size());
    }
    return text;
}

void ReplaceTextFile(const std::string& path, std::string_view text, std::string_view option) {
    const std::wstring target = standins::ToWide(path);
    const std::wstring unfinished = target + L".unfinished";
    const auto refuse = [&](DWORD error) {
        DeleteFileW(unfinished.c_str());
        return HostError(ExitCode::BadInput, "cannot write the file of " + std::string(option) +
                                                 ", '" + path + "': " + Win32ErrorText(error) +
                                                 kNameAnother);
    };
    ScopedHandle<FileTraits> file(CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr,
                                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (!file ||
        !WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr)) {
        const DWORD error = GetLastError();
        file.Reset();
        throw refuse(error);
    }
    file.Reset();
    if (!MoveFileExW(unfinished.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        throw refuse(GetLastError());
    }
}

}  // namespace host
