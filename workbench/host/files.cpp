#include "host/files.h"

#include "common/text.h"
#include "util/scoped_file.h"

namespace host {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

BadInput Refused(const std::string& act, std::string_view path, DWORD error) {
    return BadInput("cannot " + act + " '" + std::string(path) + "': " + Win32ErrorText(error) +
                    "; name another file");
}

ScopedFile Open(const std::wstring& path, DWORD access, DWORD disposition) {
    return ScopedFile(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  /*lpSecurityAttributes=*/nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, /*hTemplateFile=*/nullptr));
}

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
    full.resize(GetFullPathNameW(workbench::ToWide(path).c_str(), static_cast<DWORD>(full.size()),
                                 full.data(), nullptr));
    return full;
}

std::string ReadTextFile(std::string_view path, std::string_view purpose) {
    const auto refused = [&] {
        return Refused("read the " + std::string(purpose), path, GetLastError());
    };
    const ScopedFile file = Open(workbench::ToWide(path), GENERIC_READ, OPEN_EXISTING);
    if (!file) {
        throw refused();
    }
    std::string text;
    char block[16384];
    DWORD count = 0;
    do {
        if (!ReadFile(file.Get(), block, sizeof(block), &count, nullptr)) {
            throw refused();
        }
        text.append(block, count);
    } while (count != 0);
    if (text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
        text.erase(0, kByteOrderMark.size());
    }
    return text;
}

BadInput Unwritable(std::string_view option, std::string_view path, DWORD error) {
    return Refused("write the file of " + std::string(option) + ",", path, error);
}

void CheckWritable(std::string_view option, std::string_view path) {
    const std::wstring widePath = workbench::ToWide(path);
    ScopedFile file = Open(widePath, GENERIC_WRITE, OPEN_ALWAYS);
    const DWORD error = GetLastError();
    if (!file) {
        throw Unwritable(option, path, error);
    }
    if (error != ERROR_ALREADY_EXISTS) {
        file.Reset();
        DeleteFileW(widePath.c_str());
    }
}

void EmptyFile(std::string_view option, std::string_view path) {
    if (!Open(workbench::ToWide(path), GENERIC_WRITE, CREATE_ALWAYS)) {
        throw Unwritable(option, path, GetLastError());
    }
}

void ReplaceTextFile(std::string_view option, std::string_view path, std::string_view text) {
    const std::wstring target = workbench::ToWide(path);
    const std::wstring unfinished = target + L".unfinished";
    ScopedFile file = Open(unfinished, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    bool done = file && WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()),
                                  &written, nullptr) != FALSE;
    DWORD error = GetLastError();
    file.Reset();
    if (done) {
        done = MoveFileExW(unfinished.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
        error = GetLastError();
    }
    if (!done) {
        DeleteFileW(unfinished.c_str());
        throw Unwritable(option, path, error);
    }
}

}  // namespace host
