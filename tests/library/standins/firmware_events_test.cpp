#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

#include "standins/wmi_kit/wmi_kit_control.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using VrSDK::BiosEventMonitor;

constexpr unsigned int kEventCode = 675;

// A subscriber is a plain function, so what it notes and waits for is global.
std::atomic<int> deliveries;
std::atomic<int> runningNow;
std::atomic<bool> mayReturn;
std::vector<unsigned int> codes;
DWORD deliveryThread;
BiosEventMonitor* monitorToStop;

void NoteCode(unsigned int code) {
    codes.push_back(code);
    deliveryThread = GetCurrentThreadId();
}

void Count(unsigned int) { ++deliveries; }

void WaitUntilAllowed(unsigned int) {
    ++runningNow;
    while (!mayReturn) {
        Sleep(1);
    }
    ++deliveries;
    --runningNow;
}

void StopFromWithin(unsigned int) {
    monitorToStop->StopEventMonitor();
    ++deliveries;
}

/// Waits until that many subscribers run at once; false when they do not within ten seconds.
bool WaitForRunning(int count) {
    for (int tries = 0; tries < 10'000 && runningNow != count; ++tries) {
        Sleep(1);
    }
    return runningNow == count;
}

class FirmwareEvents : public testing::Test {
protected:
    void SetUp() override {
        WmiKit_Reset();
        deliveries = 0;
        runningNow = 0;
        mayReturn = false;
        codes.clear();
    }
    void TearDown() override { WmiKit_Reset(); }
};

TEST_F(FirmwareEvents, DeliversEventsOnTheFiringThreadWhileSubscribed) {
    BiosEventMonitor monitor;
    EXPECT_EQ(WmiKit_FireFirmwareEvent(1), 0);
    EXPECT_EQ(monitor.StartEventMonitor(&NoteCode), 0);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(kEventCode), 1);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(676), 1);
    EXPECT_EQ(monitor.StopEventMonitor(), 0);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(3), 0);

    const std::vector<unsigned int> expected = {kEventCode, 676};
    EXPECT_EQ(codes, expected);
    EXPECT_EQ(deliveryThread, GetCurrentThreadId());
}

TEST_F(FirmwareEvents, RefusesASecondStartAndAStopWithoutStart) {
    BiosEventMonitor monitor;
    EXPECT_NE(monitor.StopEventMonitor(), 0);
    EXPECT_NE(monitor.StartEventMonitor(nullptr), 0);
    EXPECT_EQ(monitor.StartEventMonitor(&Count), 0);
    EXPECT_NE(monitor.StartEventMonitor(&NoteCode), 0);
    WmiKit_FireFirmwareEvent(kEventCode);
    EXPECT_EQ(deliveries, 1);
    EXPECT_EQ(monitor.StopEventMonitor(), 0);
    EXPECT_EQ(monitor.StartEventMonitor(&Count), 0);
}

TEST_F(FirmwareEvents, SubscribesNobodyWhenTheStartIsToldToFail) {
    WmiKit_SetStartResult(5);
    BiosEventMonitor monitor;
    EXPECT_EQ(monitor.StartEventMonitor(&Count), 5);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(kEventCode), 0);
    EXPECT_EQ(deliveries, 0);
}

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
    monitor.StartEventMonitor(&WaitUntilAllowed);
    std::thread firing(WmiKit_FireFirmwareEvent, kEventCode);
    ASSERT_TRUE(WaitForRunning(1));
    auto stopped = std::async(std::launch::async, [&] {
        monitor.StopEventMonitor();
        return deliveries.load();
    });
    EXPECT_EQ(stopped.wait_for(milliseconds(100)), std::future_status::timeout);
    EXPECT_EQ(WmiKit_FireFirmwareEvent(kEventCode), 0) << "an event after Stop began";
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
    const auto outcome = stopped.wait_for(seconds(10));
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

TEST_F(FirmwareEvents, AMonitorStoppedDuringTheDeliveryToAnotherGetsNothing) {
    BiosEventMonitor first;
    BiosEventMonitor second;
    first.StartEventMonitor(&StopFromWithin);
    second.StartEventMonitor(&Count);
    monitorToStop = &second;
    WmiKit_FireFirmwareEvent(kEventCode);
    EXPECT_EQ(deliveries, 1);
}

TEST_F(FirmwareEvents, StartsAndStopsWhileEventsRainDown) {
    std::atomic<bool> done{false};
    std::thread firing([&] {
        while (!done) {
            WmiKit_FireFirmwareEvent(kEventCode);
        }
    });
    for (int i = 0; i < 500; ++i) {
        BiosEventMonitor monitor;
        EXPECT_EQ(monitor.StartEventMonitor(&Count), 0);
        EXPECT_EQ(monitor.StopEventMonitor(), 0);
        const int afterStop = deliveries;
        Sleep(0);
        EXPECT_EQ(deliveries, afterStop);
    }
    done = true;
    firing.join();
}

}  // namespace
