// Does with the timer manager what ends the process, and tells on standard output why it ended.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "report/timer_report_mgr.h"
#include "standins/log_kit/log_kit_control.h"

namespace {

/// A minute of real time and more, of which the loop needs a tenth of a second.
constexpr DWORD kLongerThanTheLoopNeeds = 800 * 3600 * 1000u;

[[noreturn]] void End(const std::string& reason, unsigned exitCode) {
    std::printf("%s\n", reason.c_str());
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), exitCode);
    std::abort();
}

/// What the standard library calls when it ends the process.
[[noreturn]] void TellWhy() {
    const std::exception_ptr exception = std::current_exception();
    if (exception == nullptr) {
        End("no exception", 73);
    }
    try {
        std::rethrow_exception(exception);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_deadlock_would_occur) {
            End("resource deadlock", 71);
        }
        End(std::string("system error: ") + error.what(), 74);
    } catch (const std::exception& error) {
        End(std::string("exception: ") + error.what(), 72);
    }
}

void RunHourly(const TimerReportMgr::Callback& callback) {
    TimerReportMgr::GetInstance().RegisterReportCallback(callback, 1);
    TimerReportMgr::GetInstance().Start();
    Sleep(kLongerThanTheLoopNeeds);
}

bool managerIsGone = false;

struct PartOfTheManager {
    ~PartOfTheManager() { managerIsGone = true; }
};

/// At the end of the program what was made last goes first.
void UseTheManagerForTheFirstTime() {
    std::atexit([] { End(managerIsGone ? "made on first use" : "made at load", 70); });
    const auto part = std::make_shared<PartOfTheManager>();
    TimerReportMgr::GetInstance().RegisterReportCallback([part] {}, 1);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    LogKit_SetConsole(0);
    std::set_terminate(&TellWhy);
    const std::string scenario = argumentCount == 2 ? arguments[1] : "";
    if (scenario == "stop-from-callback") {
        RunHourly([] { TimerReportMgr::GetInstance().Stop(); });
    } else if (scenario == "throw-from-callback") {
        RunHourly([] { throw std::runtime_error("from the callback"); });
    } else if (scenario == "second-start") {
        TimerReportMgr::GetInstance().RegisterReportCallback([] {}, 1);
        TimerReportMgr::GetInstance().Start();
        TimerReportMgr::GetInstance().Start();
    } else if (scenario == "first-use") {
        UseTheManagerForTheFirstTime();
        std::exit(1);
    }
    End("survived", 1);
}
