// Runs a program and writes its exit code into the file that TALLYPORT_EXIT_CODE_FILE names.
//
// Wine's server gives an ending process half a second before it kills it. On the fast clock that is
// over at once, and the shell sees a killed process whatever the program returned. Another Windows
// process still reads the true exit code.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

/// The command line without this program's own name, quoted as it was given.
const wchar_t* RemainingCommandLine() {
    const wchar_t* text = GetCommandLineW();
    bool quoted = false;
    for (; *text != L'\0' && (quoted || *text != L' '); ++text) {
        if (*text == L'"') quoted = !quoted;
    }
    while (*text == L' ') ++text;
    return text;
}

BOOL WINAPI LeaveInterruptsToTheProgram(DWORD) { return TRUE; }

}  // namespace

int main() {
    wchar_t file[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"TALLYPORT_EXIT_CODE_FILE", file, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        std::fputs("keep_exit_code: TALLYPORT_EXIT_CODE_FILE names no file\n", stderr);
        return 1;
    }
    SetConsoleCtrlHandler(LeaveInterruptsToTheProgram, TRUE);

    std::wstring commandLine = RemainingCommandLine();
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, /*bInheritHandles=*/TRUE, 0,
                        nullptr, nullptr, &startup, &process)) {
        std::fprintf(stderr, "keep_exit_code: '%ls' cannot be started, error %lu\n",
                     commandLine.c_str(), GetLastError());
        return 1;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 1;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);

    std::FILE* out = _wfopen(file, L"wb");
    if (out == nullptr) {
        std::fprintf(stderr, "keep_exit_code: '%ls' cannot be written\n", file);
        return 1;
    }
    std::fprintf(out, "%lu\n", exitCode);
    std::fclose(out);
    return 0;
}
