#include "library/lifecycle/running_plugin.h"

#include "simulation/call_text.h"
#include "simulation/fakes/families.h"

namespace {

simulation::Machine AnnsMachine() {
    simulation::Machine machine;
    machine.logons.consoleSession = 1;
    machine.logons.sessions = {{1, WTSActive, L"PC\\ann", ERROR_SUCCESS}};
    machine.logons.accounts = {{L"PC\\ann", L"S-1-5-21-1-2-3-1001"}};
    machine.fileVersions
        [L"C:\\Program Files\\Zentro\\Orbisuite\\components\\TuneBoost\\"
         L"TuneBoostCenter.exe"] = {{5, 6, 7, 8}, {1, 2, 3, 4}};
    return machine;
}

}  // namespace

std::string RegisterLine(int hours) {
    return "log 3 Register timer:" + std::to_string(hours) +
           "(TimerReportMgr::RegisterReportCallback)";
}

RunningPlugin::RunningPlugin()
    : machine(module.Handle(), AnnsMachine(),
              {simulation::InstallHandleFakes, simulation::InstallSessionFakes,
               simulation::InstallAccountFakes, simulation::InstallVersionInfoFakes}) {
    const std::string key = "HKU\\S-1-5-21-1-2-3-1001\\SOFTWARE\\Zentro\\Orbisuite\\TuneBoost";
    suite.registry.SetValue(key + ":PopUpBlockingStatus", 0);
    suite.registry.SetValue(key + ":PowerfulModeStatus", 0);
    suite.log.onLine = [this](const test_support::LogLine& line) {
        if ("log 3 " + simulation::ToUtf8(line.text) == kLoopLine) {
            HANDLE copy = nullptr;
            if (DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &copy,
                                SYNCHRONIZE, /*bInheritHandle=*/FALSE, /*dwOptions=*/0)) {
                loopThread.Reset(copy);
            }
        }
    };
}

RunningPlugin::~RunningPlugin() {
    // They may refer to what the test's body had.
    suite.onWmiCall = nullptr;
    suite.log.onLine = nullptr;
    if (running) {
        Stop();
    }
    EXPECT_TRUE(machine.world().ledger.Balanced()) << machine.world().ledger;
}

void RunningPlugin::Start() {
    EXPECT_TRUE(plugin->Start());
    running = true;
    ASSERT_TRUE(loop.LoopWaits());
}

void RunningPlugin::Stop() {
    EXPECT_TRUE(plugin->Stop());
    running = false;
}

bool RunningPlugin::LoopThreadHasEnded() const {
    return loopThread && WaitForSingleObject(loopThread.Get(), 0) == WAIT_OBJECT_0;
}

std::vector<std::string> RunningPlugin::TextsOfThisThread() const {
    std::vector<std::string> texts;
    for (const test_support::Happening& happening : suite.timeline.Happenings()) {
        if (happening.threadId == GetCurrentThreadId()) {
            texts.push_back(happening.text);
        }
    }
    return texts;
}
