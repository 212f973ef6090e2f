#include "unit/device_monitor/running_monitor.h"

#include "unit/device_monitor/monitor_test.h"

namespace device_monitor_test {

RunningMonitor::RunningMonitor(simulation::World& worldOfTest,
                               DeviceReporter::ReportDeviceInfo& theReporter)
    : world(worldOfTest), reporter(theReporter), thread([this] {
          threadId = GetCurrentThreadId();
          status = DeviceReporter::ReportDeviceInfo::MonitorThreadProc(&reporter);
          ended = true;
      }) {}

RunningMonitor::~RunningMonitor() { Close(); }

bool RunningMonitor::WaitsForMessages() {
    reachedLoop = ComesTrue([this] { return world.journal.Count("GetMessageW") > 0; });
    return reachedLoop;
}

bool RunningMonitor::Ends() const {
    return ComesTrue([this] { return ended.load(); });
}

LRESULT RunningMonitor::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(reporter.msgWindow, message, wParam, lParam);
}

void RunningMonitor::Close() {
    if (!thread.joinable()) {
        return;
    }
    // The test may have cleared the journal since the loop was seen.
    ComesTrue([this] { return reachedLoop || ended || world.journal.Count("GetMessageW") > 0; });
    if (!ended && reporter.msgWindow != nullptr) {
        Send(WM_CLOSE);
    } else if (!ended) {
        PostThreadMessageW(threadId, WM_QUIT, 0, 0);  // Only a monitor with a fault has no window.
    }
    thread.join();
}

}  // namespace device_monitor_test
