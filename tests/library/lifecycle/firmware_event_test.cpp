#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "library/lifecycle/running_plugin.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace {

using Texts = std::vector<std::string>;

class FirmwareEvent : public RunningPlugin {
protected:
    FirmwareEvent() {
        Start();
        suite.timeline.Clear();
    }
};

TEST_F(FirmwareEvent, Code675SendsTheLogOnTheDeliveringThread) {
    WmiKit_SetAnswer(/*result=*/0, /*status=*/0, /*dataSize=*/16, nullptr, 0);
    DWORD deliveringThread = 0;
    std::thread([&] {
        deliveringThread = GetCurrentThreadId();
        EXPECT_EQ(WmiKit_FireFirmwareEvent(675), 1);
    }).join();
    EXPECT_EQ(suite.timeline.Texts(),
              (Texts{"BiosWmi::GetBiosInfo", "log 3 EC log data size is 16(ReportECLogInfo)",
                     "event 992614512"}));
    const std::vector<test_support::Event> events = suite.events.WithId(992614512);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].threadId, deliveringThread);
    ASSERT_EQ(events[0].fields.size(), 1u);
    EXPECT_EQ(events[0].fields[0].first, "ECLog");
    EXPECT_EQ(events[0].fields[0].second.size(), 1012u);
}

TEST_F(FirmwareEvent, OtherCodesDoNothing) {
    for (const unsigned int code : {674u, 676u, 0u, 675u + 65536u, 4294967295u}) {
        EXPECT_EQ(WmiKit_FireFirmwareEvent(code), 1);
    }
    EXPECT_EQ(suite.timeline.Texts(), Texts{});
}

TEST_F(FirmwareEvent, EachDeliveryIsReported) {
    for (int i = 0; i < 5; ++i) {
        WmiKit_FireFirmwareEvent(675);
    }
    EXPECT_EQ(suite.events.WithId(992614512).size(), 5u);
}

TEST_F(FirmwareEvent, AFailedReadIsLoggedAndTheNextOneIsReported) {
    WmiKit_SetAnswer(0, 2, 0, nullptr, 0);
    WmiKit_FireFirmwareEvent(675);
    EXPECT_EQ(
        suite.timeline.Texts(),
        (Texts{"BiosWmi::GetBiosInfo", "log 4 ReadECLog error ret=0,status=2(ReportECLogInfo)"}));
    WmiKit_SetAnswer(0, 0, 0, nullptr, 0);
    WmiKit_FireFirmwareEvent(675);
    EXPECT_EQ(suite.events.WithId(992614512).size(), 1u);
}

TEST_F(FirmwareEvent, LetsAnExceptionThrough) {
    suite.events.onEvent = [](const test_support::Event&) { throw std::runtime_error("not sent"); };
    EXPECT_THROW(WmiKit_FireFirmwareEvent(675), std::runtime_error);
}

TEST_F(FirmwareEvent, TwoAtOnceAreReadInParallel) {
    std::atomic<int> reading{0};
    std::atomic<int> metTheOther{0};
    suite.onWmiCall = [&](const std::string& operation, const std::string&) {
        if (operation != "GetBiosInfo") {
            return;
        }
        ++reading;
        metTheOther += test_support::ComesTrue([&] { return reading == 2; }) ? 1 : 0;
    };
    std::thread first([] { WmiKit_FireFirmwareEvent(675); });
    std::thread second([] { WmiKit_FireFirmwareEvent(675); });
    first.join();
    second.join();
    EXPECT_EQ(metTheOther, 2);
    std::set<DWORD> threads;
    for (const test_support::Event& event : suite.events.WithId(992614512)) {
        threads.insert(event.threadId);
    }
    EXPECT_EQ(threads.size(), 2u);
}

}  // namespace
