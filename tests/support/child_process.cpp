#include "support/child_process.h"

#include <cstdio>
#include <stdexcept>

#include "util/scoped_file.h"

namespace test_support {
namespace {

constexpr int kStarts = 5;

/// A file that child processes inherit and that vanishes with its last handle. Not a pipe: services
/// that Wine starts on a child's behalf inherit it too, and a pipe would not end before they do.
ScopedFile MakeCaptureFile() {
    wchar_t folder[MAX_PATH + 1] = {};
    wchar_t path[MAX_PATH + 1] = {};
    SECURITY_ATTRIBUTES inheritable{sizeof(inheritable), nullptr, TRUE};
    if (GetTempPathW(MAX_PATH, folder) == 0 || GetTempFileNameW(folder, L"out", 0, path) == 0) {
        throw std::runtime_error("no temporary file, error " + std::to_string(GetLastError()));
    }
    ScopedFile file(CreateFileW(path, GENERIC_READ | GENERIC_WRITE | DELETE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                &inheritable, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (!file) {
        throw std::runtime_error("no temporary file, error " + std::to_string(GetLastError()));
    }
    return file;
}

std::string ReadFromStart(HANDLE file) {
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    std::string text;
    char buffer[4096];
    DWORD read = 0;
    while (ReadFile(file, buffer, sizeof(buffer), &read, nullptr) && read != 0) {
        text.append(buffer, read);
    }
    return text;
}

/// The system waits for less than fifty days at a time: on the fast clock these are two minutes.
bool EndsWithin(HANDLE process, std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds kMost{0x7FFFFFFF};
    for (; limit > kMost; limit -= kMost) {
        if (WaitForSingleObject(process, static_cast<DWORD>(kMost.count())) == WAIT_OBJECT_0) {
            return true;
        }
    }
    return WaitForSingleObject(process, static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
}

}  // namespace

std::wstring ProgramFolder() {
    std::wstring path(32768, L'\0');
    path.resize(
        GetModuleFileNameW(/*hModule=*/nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.rfind(L'\\'));
}

ChildResult RunChild(const std::wstring& program, const std::vector<std::wstring>& arguments,
                     std::chrono::milliseconds limit, StandardError standardError) {
    std::wstring commandLine = L"\"" + program + L"\"";
    for (const std::wstring& argument : arguments) {
        commandLine += L" \"" + argument + L"\"";
    }
    const ScopedFile output = MakeCaptureFile();
    const ScopedFile errors = MakeCaptureFile();
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.Get();
    startup.hStdError = standardError == StandardError::Apart ? errors.Get() : output.Get();
    PROCESS_INFORMATION information{};
    for (int started = 1; !CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr,
                                          /*bInheritHandles=*/TRUE, /*dwCreationFlags=*/0, nullptr,
                                          nullptr, &startup, &information);
         ++started) {
        const DWORD error = GetLastError();
        // Wine says so when it has lost a process before its first instruction.
        if (error != ERROR_INTERNAL_ERROR || started == kStarts) {
            throw std::runtime_error("a child process cannot be started, error " +
                                     std::to_string(error));
        }
        std::printf("Wine lost %ls at its start; it is started again\n", program.c_str());
    }
    const ScopedKernelHandle process(information.hProcess);
    const ScopedKernelHandle thread(information.hThread);
    ChildResult result;
    result.finished = EndsWithin(process.Get(), limit);
    if (!result.finished) {
        TerminateProcess(process.Get(), 1);
        WaitForSingleObject(process.Get(), INFINITE);
    }
    result.output = ReadFromStart(output.Get());
    result.errors = ReadFromStart(errors.Get());
    GetExitCodeProcess(process.Get(), &result.exitCode);
    return result;
}

}  // namespace test_support
