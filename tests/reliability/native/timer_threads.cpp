// The timer manager under a thread checker, with hours of a fraction of a millisecond: managers are
// started and stopped from different threads while others log and ask for the instance.
//
//     timer_threads RECORD    writes the row for the table of `./dev test reliability`
//
// The checker ends the program with an exit code of its own when it finds a race.
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/log_kit.h"
#include "report/log_line.h"
#include "report/timer_report_mgr.h"

namespace {

constexpr unsigned kRounds = 300;
constexpr unsigned kOtherThreads = 3;

std::atomic<unsigned> lines{0};

/// One manager from registration to Stop. False when a callback ran at the wrong hours.
bool Live(unsigned round) {
    TimerReportMgr manager;
    // The loop's thread alone touches them until Stop has joined it.
    unsigned everyHour = 0;
    unsigned everyThirdHour = 0;
    bool inTime = true;
    std::atomic<unsigned> seen{0};
    manager.RegisterReportCallback(
        [&] {
            ++everyHour;
            ++seen;
        },
        1);
    manager.RegisterReportCallback(
        [&] {
            ++everyThirdHour;
            inTime = inTime && everyHour == 3 * everyThirdHour;
        },
        3);
    std::thread([&] { manager.Start(); }).join();
    while (seen < round % 7) {
        std::this_thread::yield();
    }
    std::thread([&] { manager.Stop(); }).join();
    return inTime && everyThirdHour == everyHour / 3;
}

}  // namespace

VrLogger* VrLogger::GetInstance() {
    static VrLogger logger;
    return &logger;
}

void VrLogger::Log(LOG_MESSAGE_LEVEL /*level*/, std::wstringstream& stream) {
    lines += stream.str().empty() ? 0 : 1;
}

ScopedModule ReferenceThisModule() { return ScopedModule(); }

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fputs("usage: timer_threads RECORD\n", stderr);
        return 2;
    }
    const std::filesystem::path record(arguments[1]);
    std::filesystem::create_directories(record.parent_path());
    std::filesystem::remove(record);
    TimerReportMgr::GetInstance().RegisterReportCallback([] {}, 2);
    TimerReportMgr::GetInstance().Start();
    std::atomic<bool> over{false};
    std::vector<std::thread> others;
    for (unsigned i = 0; i < kOtherThreads; ++i) {
        others.emplace_back([&over, i] {
            while (!over) {
                TimerReportMgr::GetInstance();
                WriteLogLine(LOG_LEVEL_NORMAL, "Other", i);
            }
        });
    }
    unsigned wrong = 0;
    for (unsigned round = 0; round < kRounds; ++round) {
        wrong += Live(round) ? 0 : 1;
    }
    over = true;
    for (std::thread& other : others) {
        other.join();
    }
    std::printf("%u rounds, %u wrong, %u log lines\n", kRounds, wrong, lines.load());
    std::ofstream(record) << R"({"rows": [{"what": "timer managers under ThreadSanitizer", )"
                          << R"("tried": )" << kRounds << R"(, "wrong": )" << wrong << "}]}\n";
    return wrong == 0 ? 0 : 1;
}
