#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "library/lifecycle/running_plugin.h"
#include "simulation/call_text.h"
#include "standins/wmi_kit/wmi_kit_control.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kUnsubscribed[] = "BiosEventMonitor::StopEventMonitor";

class PluginStop : public RunningPlugin {
protected:
    /// What one Stop does, on whatever thread.
    Texts StopAndTell() {
        suite.timeline.Clear();
        Stop();
        return suite.timeline.Texts();
    }
};

TEST_F(PluginStop, EndsTheLoopThenTheDeviceMonitorThenTheSubscription) {
    Start();
    std::atomic<bool> loopHadEndedBeforeMonitor{false};
    std::atomic<bool> loopHadEndedBeforeSubscription{false};
    suite.log.onLine = [&](const test_support::LogLine& line) {
        if ("log 3 " + simulation::ToUtf8(line.text) == kNoWindowAtStop) {
            loopHadEndedBeforeMonitor = LoopThreadHasEnded();
        }
    };
    suite.onWmiCall = [&](const std::string&, const std::string&) {
        loopHadEndedBeforeSubscription = LoopThreadHasEnded();
    };
    ASSERT_FALSE(LoopThreadHasEnded());
    EXPECT_EQ(StopAndTell(), (Texts{kNoWindowAtStop, kUnsubscribed}));
    EXPECT_TRUE(loopHadEndedBeforeMonitor);
    EXPECT_TRUE(loopHadEndedBeforeSubscription);
}

TEST_F(PluginStop, UnsubscribesOnAnotherThreadAndWaitsForIt) {
    Start();
    std::atomic<DWORD> unsubscribingThread{0};
    std::atomic<bool> done{false};
    suite.onWmiCall = [&](const std::string&, const std::string&) {
        unsubscribingThread = GetCurrentThreadId();
        Sleep(300);
        done = true;
    };
    Stop();
    EXPECT_TRUE(done);
    EXPECT_NE(unsubscribingThread, 0u);
    EXPECT_NE(unsubscribingThread, GetCurrentThreadId());
}

TEST_F(PluginStop, LeavesNobodySubscribed) {
    Start();
    EXPECT_EQ(WmiKit_FireFirmwareEvent(674), 1);
    Stop();
    EXPECT_EQ(WmiKit_FireFirmwareEvent(675), 0);
    EXPECT_EQ(suite.timeline.Count("BiosWmi::GetBiosInfo"), 0u);
}

class RefusedSubscription : public PluginStop, public testing::WithParamInterface<int> {};

TEST_P(RefusedSubscription, IsNotEnded) {
    WmiKit_SetStartResult(GetParam());
    Start();
    EXPECT_EQ(StopAndTell(), Texts{kNoWindowAtStop});
}

INSTANTIATE_TEST_SUITE_P(WhateverTheResult, RefusedSubscription, testing::Values(1, -5));

TEST_F(PluginStop, IsHarmlessWithoutStart) {
    EXPECT_EQ(StopAndTell(), Texts{kNoWindowAtStop});
    EXPECT_EQ(StopAndTell(), Texts{kNoWindowAtStop});
}

TEST_F(PluginStop, UnsubscribesAgainAtASecondCall) {
    Start();
    EXPECT_EQ(StopAndTell(), (Texts{kNoWindowAtStop, kUnsubscribed}));
    EXPECT_EQ(StopAndTell(), (Texts{kNoWindowAtStop, kUnsubscribed}));
}

TEST_F(PluginStop, LeavesARefusedSubscriptionAloneAlsoAfterAnAcceptedOne) {
    Start();
    Stop();
    WmiKit_SetStartResult(-5);
    EXPECT_TRUE(plugin->Start());
    EXPECT_EQ(StopAndTell(), Texts{kNoWindowAtStop});
}

TEST_F(PluginStop, ThroughAnotherObjectThanTheStartedOneEndsTheSameReports) {
    Start();
    plugin = module.Create(manager);
    Stop();
    EXPECT_TRUE(LoopThreadHasEnded());
    EXPECT_EQ(suite.timeline.Count(kUnsubscribed), 1u);
}

TEST_F(PluginStop, SendsNothing) {
    Start();
    const std::size_t sentBefore = suite.events.All().size();
    Stop();
    EXPECT_EQ(suite.events.All().size(), sentBefore);
}

TEST(LoadedAgain, StartsStopsAndUnloadsAnyNumberOfTimes) {
    for (int i = 0; i < 10; ++i) {
        const test_support::RecordedSuite suite;
        const test_support::PluginsManager manager;
        {
            test_support::PluginModule module;
            const test_support::LoopWaitProbe loop(module.Handle());
            const std::shared_ptr<ZedPlugin> plugin = module.Create(manager);
            EXPECT_TRUE(plugin->Start());
            ASSERT_TRUE(loop.LoopWaits());
            EXPECT_EQ(suite.events.WithId(992614500).size(), 1u);
            EXPECT_TRUE(plugin->Stop());
        }
        ASSERT_FALSE(test_support::IsLoaded(L"TallyportPlugin.dll"));
        EXPECT_EQ(manager.Count(), 0u);
    }
}

}  // namespace
