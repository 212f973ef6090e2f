#include "fuzz/case_watch.h"

#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <thread>

namespace fuzz {
namespace {

constexpr int kExitCode = 3;
constexpr DWORD kLookEveryMs = 1000;
/// Far more than any case takes, on a busy machine too.
constexpr int kLooksUntilHung = 60;

std::string command;  // Without the case number. Changes only while nothing is watched.
std::atomic<bool> watching{false};
std::atomic<std::uint64_t> currentCase{0};

std::string ProgramName() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(/*hModule=*/nullptr, path, MAX_PATH - 1);
    const std::string text = path;
    return text.substr(text.find_last_of('\\') + 1);
}

[[noreturn]] void EndProgram(const char* what, unsigned long detail) {
    if (watching) {
        std::printf("\nThe program %s (0x%lX) at case %llu. To repeat it: %s\n", what, detail,
                    static_cast<unsigned long long>(currentCase.load()),
                    RepeatCommand(currentCase).c_str());
    } else {
        std::printf("\nThe program %s (0x%lX) outside of a case\n", what, detail);
    }
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), kExitCode);
    std::abort();
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    EndProgram("crashed", exception->ExceptionRecord->ExceptionCode);
}

void OnAbort(int signalNumber) {
    EndProgram("was aborted", static_cast<unsigned long>(signalNumber));
}

DWORD WINAPI LookForHungCases(void* /*parameter*/) {
    std::uint64_t lastCase = 0;
    int looks = 0;
    for (;;) {
        Sleep(kLookEveryMs);
        looks = watching && currentCase == lastCase ? looks + 1 : 0;
        lastCase = currentCase;
        if (looks == kLooksUntilHung) {
            EndProgram("hangs", kLooksUntilHung);
        }
    }
}

}  // namespace

void InstallCaseWatch() {
    SetUnhandledExceptionFilter(&OnCrash);
    std::signal(SIGABRT, &OnAbort);
    CloseHandle(CreateThread(/*lpThreadAttributes=*/nullptr, /*dwStackSize=*/0, &LookForHungCases,
                             /*lpParameter=*/nullptr, /*dwCreationFlags=*/0,
                             /*lpThreadId=*/nullptr));
}

void WatchCasesOf(const std::string& test, std::uint64_t seed) {
    command = FUZZ_LAUNCHER + ProgramName() + " --gtest_filter=" + test + " --seed " +
              std::to_string(seed);
    watching = true;
}

void CaseBegins(std::uint64_t number) { currentCase = number; }

void StopWatching() { watching = false; }

std::string RepeatCommand(std::uint64_t number) {
    return command + " --case " + std::to_string(number);
}

}  // namespace fuzz
