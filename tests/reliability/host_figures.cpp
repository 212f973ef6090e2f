#include "reliability/host_figures.h"

#include <windows.h>
#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace reliability_test {
namespace {

constexpr std::size_t kSamplesOfAPart = 9;

std::size_t MedianOf(std::vector<std::size_t> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

// Declared here: not every SDK's headers know them.
constexpr int kExtendedHandleInformation = 64;
struct HandleEntry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR value;
    ULONG access;
    USHORT creator;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};
struct HandleList {
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};

/// What the system tells about all its processes. Valid until the next call.
const BYTE* Ask(int what) {
    static auto* const query =
        reinterpret_cast<LONG NTAPI (*)(int, void*, ULONG, ULONG*)>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    static std::vector<BYTE> answer(1 << 20);
    for (;;) {
        ULONG size = 0;
        const LONG status = query(what, answer.data(), static_cast<ULONG>(answer.size()), &size);
        if (status >= 0) {
            return answer.data();
        }
        if (answer.size() > (64u << 20)) {
            throw std::runtime_error("the system does not tell about its processes");
        }
        answer.resize(answer.size() * 2);
    }
}

/// Each by itself: Wine's GetProcessHandleCount knows no number, and the one in its list of
/// processes is the size of a table.
std::size_t CountHandles() {
    const auto& list = *reinterpret_cast<const HandleList*>(Ask(kExtendedHandleInformation));
    return static_cast<std::size_t>(std::count_if(
        list.entries, list.entries + list.count,
        [](const HandleEntry& entry) { return entry.process == GetCurrentProcessId(); }));
}

std::size_t CountThreads() {
    const auto self = reinterpret_cast<HANDLE>(std::uintptr_t{GetCurrentProcessId()});
    const BYTE* entry = Ask(SystemProcessInformation);
    for (;;) {
        const auto& process = *reinterpret_cast<const SYSTEM_PROCESS_INFORMATION*>(entry);
        if (process.UniqueProcessId == self) {
            return process.NumberOfThreads;
        }
        if (process.NextEntryOffset == 0) {
            throw std::runtime_error("the system does not list this process");
        }
        entry += process.NextEntryOffset;
    }
}

}  // namespace

HostFigures MeasureHost() {
    HostFigures figures;
    figures.handles = CountHandles();
    figures.threads = CountThreads();
    WNDCLASSW windowClass{};
    figures.windowClasses =
        GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass) ? 1 : 0;
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory));
    figures.privateKilobytes = memory.PagefileUsage / 1024;
    return figures;
}

std::size_t FigureCourse::Median() const { return MedianOf(samples); }

std::ptrdiff_t FigureCourse::Growth() const {
    const std::size_t part = std::min(kSamplesOfAPart, samples.size());
    const auto size = static_cast<std::ptrdiff_t>(part);
    const auto begin = samples.begin() + static_cast<std::ptrdiff_t>((samples.size() - part) / 2);
    return static_cast<std::ptrdiff_t>(MedianOf({samples.end() - size, samples.end()})) -
           static_cast<std::ptrdiff_t>(MedianOf({begin, begin + size}));
}

std::string FigureCourse::Text() const {
    return figureName + ": first " + std::to_string(First()) + ", median " +
           std::to_string(Median()) + ", last " + std::to_string(Last());
}

void HostCourse::Sample(Growth known) {
    const HostFigures figures = MeasureHost();
    handles.Add(figures.handles - known.handles);
    threads.Add(figures.threads);
    windowClasses.Add(figures.windowClasses);
    memory.Add(figures.privateKilobytes - known.kilobytes);
}

std::string HostCourse::Verdict(Growth slack) const {
    std::string verdict;
    const auto judge = [&verdict](const FigureCourse& course, std::size_t mayGrow) {
        std::printf("%s\n", course.Text().c_str());
        if (course.Growth() > static_cast<std::ptrdiff_t>(mayGrow)) {
            verdict += course.Text() + "; ";
        }
    };
    judge(handles, slack.handles);
    judge(threads, 0);
    judge(windowClasses, 0);
    judge(memory, slack.kilobytes);
    std::fflush(stdout);
    return verdict;
}

}  // namespace reliability_test
