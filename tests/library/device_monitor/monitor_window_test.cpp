// The monitor of the built library: class, window and thread inside somebody else's process.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/call_text.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;
using simulation::CallText;

class MonitorWindow : public MonitoredPlugin {};

TEST_F(MonitorWindow, HasAClassThatBelongsToTheHostsExecutable) {
    Start();
    const auto* const host = GetModuleHandleW(nullptr);
    ASSERT_NE(host, module.Handle());
    const auto registered = Journal().Calls("RegisterClassW");
    const auto created = Journal().Calls("CreateWindowExW");
    ASSERT_EQ(registered.size(), 1u);
    ASSERT_EQ(created.size(), 1u);
    EXPECT_EQ(registered[0]["instance"], CallText(static_cast<const void*>(host)));
    EXPECT_EQ(created[0]["instance"], CallText(static_cast<const void*>(host)));
    Stop();
    const auto unregistered = Journal().Calls("UnregisterClassW");
    ASSERT_EQ(unregistered.size(), 1u);
    EXPECT_EQ(unregistered[0]["instance"], CallText(static_cast<const void*>(host)));
}

TEST_F(MonitorWindow, IsAMessageOnlyWindowOfTheMonitorsThread) {
    Start();
    const HWND window = test_support::FindMonitorWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(GetWindowThreadProcessId(window, nullptr), MonitorThreadId());
    Stop();
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
}

TEST_F(MonitorWindow, BelongsToTheThreadThatStartCreated) {
    Start();
    EXPECT_NE(MonitorThreadId(), GetCurrentThreadId());
    const auto threads = Journal().Calls("CreateThread");
    const auto windows = Journal().Calls("CreateWindowExW");
    ASSERT_EQ(threads.size(), 1u);
    EXPECT_EQ(threads[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(threads[0]["parameter"], windows.at(0)["parameter"]);
}

TEST_F(MonitorWindow, FillsTheMapBeforeItWaits) {
    Start();
    const auto fills = Journal().Calls("SetupDiGetClassDevsW");
    ASSERT_EQ(fills.size(), 2u);
    EXPECT_EQ(fills[0]["classGuid"], "{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(fills[1]["flags"], "6");
    EXPECT_LT(fills[1].sequence, Journal().Calls("GetMessageW").at(0).sequence);
    EXPECT_EQ(fills[0].threadId, MonitorThreadId());
}

TEST_F(MonitorWindow, GetsOneRequestPerHourFromTheTimerLoop) {
    Start();
    PassHours(3);
    const auto posts = Journal().Calls("PostMessageW");
    ASSERT_EQ(posts.size(), 3u);
    for (const auto& post : posts) {
        EXPECT_EQ(post["window"],
                  CallText(static_cast<const void*>(test_support::FindMonitorWindow())));
        EXPECT_EQ(post["message"], "2025");
        EXPECT_EQ(post["wParam"], "0");
        EXPECT_EQ(post["lParam"], "0");
        EXPECT_NE(post.threadId, MonitorThreadId());
        EXPECT_NE(post.threadId, GetCurrentThreadId());
    }
}

TEST_F(MonitorWindow, IsClosedByStopThroughAMessage) {
    Start();
    const HWND window = test_support::FindMonitorWindow();
    Stop();
    const auto posts = Journal().Calls("PostMessageW");
    ASSERT_EQ(posts.size(), 1u);
    EXPECT_EQ(posts[0]["window"], CallText(static_cast<const void*>(window)));
    EXPECT_EQ(posts[0]["message"], std::to_string(WM_CLOSE));
    EXPECT_EQ(posts[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 0u);
}

}  // namespace
