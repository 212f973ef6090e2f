#include <windows.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace {

using std::chrono::milliseconds;
using test_support::ComesTrue;
using VrSDK::BiosEventMonitor;

constexpr unsigned int kEventCode = 675;

// A subscriber is a plain function, so what it notes and waits for is global.
std::atomic<int> deliveries;
std::atomic<int> runningNow;
std::atomic<bool> mayReturn;
BiosEventMonitor* monitorToStop;

void Count(unsigned int) { ++deliveries; }

void WaitUntilAllowed(unsigned int) {
    ++runningNow;
    while (!mayReturn) {
        Sleep(1);
    }
    ++deliveries;
    --runningNow;
}

/// Only the first delivery waits: what comes later returns at once.
void HoldTheFirst(unsigned int) {
    if (runningNow++ == 0) {
        while (!mayReturn) {
            Sleep(1);
        }
        ++deliveries;
    }
}

void StopFromWithin(unsigned int) {
    monitorToStop->StopEventMonitor();
    ++deliveries;
}

/// Waits until that many subscribers run at once; false when they never do.
bool WaitForRunning(int count) {
    return ComesTrue([count] { return runningNow == count; });
}

class FirmwareEvents : public testing::Test {
protected:
    void SetUp() override {
        WmiKit_Reset();
        deliveries = 0;
        runningNow = 0;
        mayReturn = false;
    }
    void TearDown() override { WmiKit_Reset(); }
};

TEST_F(FirmwareEvents, DeliversToEachMonitorAndForgetsADestroyedOne) {
    BiosEventMonitor stays;
    stays.StartEventMonitor(&Count);
    {
        BiosEventMonitor goes;
        goes.StartEventMonitor(&Count);
        WmiKit_FireFirmwareEvent(kEventCode);
        EXPECT_EQ(deliveries, 2);
    }
    WmiKit_FireFirmwareEvent(kEventCode);
    EXPECT_EQ(deliveries, 3);
}

TEST_F(FirmwareEvents, DeliversEventsOfSeveralThreadsAtOnce) {
    BiosEventMonitor monitor;
    monitor.StartEventMonitor(&WaitUntilAllowed);
    std::thread first(WmiKit_FireFirmwareEvent, kEventCode);
    std::thread second(WmiKit_FireFirmwareEvent, kEventCode);
    const bool bothRan = WaitForRunning(2);
    mayReturn = true;
    first.join();
    second.join();
    EXPECT_TRUE(bothRan);
    EXPECT_EQ(deliveries, 2);
}

TEST_F(FirmwareEvents, StopWaitsForTheDeliveryUnderWay) {
    BiosEventMonitor monitor;
    monitor.StartEventMonitor(&HoldTheFirst);
    std::thread firing(WmiKit_FireFirmwareEvent, kEventCode);
    ASSERT_TRUE(WaitForRunning(1));
    auto stopped = std::async(std::launch::async, [&] {
        monitor.StopEventMonitor();
        return deliveries.load();
    });
    EXPECT_TRUE(ComesTrue([] { return WmiKit_FireFirmwareEvent(kEventCode) == 0; }))
        << "events after Stop began";
    EXPECT_EQ(stopped.wait_for(milliseconds(100)), std::future_status::timeout);
    mayReturn = true;
    EXPECT_EQ(stopped.get(), 1);
    firing.join();
}

TEST_F(FirmwareEvents, StopDoesNotWaitForDeliveriesToAnotherMonitor) {
    BiosEventMonitor busy;
    busy.StartEventMonitor(&WaitUntilAllowed);
    BiosEventMonitor other;
    std::thread firing(WmiKit_FireFirmwareEvent, kEventCode);
    ASSERT_TRUE(WaitForRunning(1));
    other.StartEventMonitor(&Count);
    auto stopped = std::async(std::launch::async, [&] { other.StopEventMonitor(); });
    const auto outcome = stopped.wait_for(test_support::kPatience);
    mayReturn = true;
    EXPECT_EQ(outcome, std::future_status::ready);
    firing.join();
}

TEST_F(FirmwareEvents, StopFromWithinADeliveryReturnsAtOnce) {
    BiosEventMonitor monitor;
    monitorToStop = &monitor;
    monitor.StartEventMonitor(&StopFromWithin);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(kEventCode), 1);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(kEventCode), 0);
    EXPECT_EQ(deliveries, 1);
}

}  // namespace
