// Prints like a GoogleTest program and ends in the way that its first argument names.

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void WriteBehindBlock() {
    auto* volatile block = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, 24));
    for (int i = 24; i < 32; ++i) block[i] = 'x';
    HeapValidate(GetProcessHeap(), 0, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string end = argc > 1 ? argv[1] : "";
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::puts("[ RUN      ] Pretended.Test");
    if (end == "crash") RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    if (end == "early") return 0;
    if (end == "hang") Sleep(INFINITE);
    if (end == "sleep") {
        const std::chrono::seconds asked(std::atoi(argv[2]));
        const auto start = std::chrono::steady_clock::now();
        Sleep(static_cast<DWORD>(asked.count()) * 1000);
        // The clock of waits and this one may differ a little.
        const bool all =
            std::chrono::steady_clock::now() - start >= asked - std::chrono::seconds(1);
        std::puts(all ? "slept for all of the time" : "woke early");
    }
    if (end == "overflow") WriteBehindBlock();
    if (end == "failed") std::puts("[  FAILED  ] Pretended.Test");
    if (end == "echo") {
        for (int i = 2; i < argc; ++i) std::printf("argument '%s'\n", argv[i]);
    }
    std::puts("[  PASSED  ] 1 test.");
    return end == "code" ? std::atoi(argv[2]) : 0;
}
