#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "standins/wmi_kit/wmi_kit_control.h"

namespace {

using VrSDK::BiosEventMonitor;
using VrSDK::BiosWmi;
using VrSDK::WmiInputParams;
using VrSDK::WmiOutputParams;

class WmiKit : public testing::Test {
protected:
    void SetUp() override { WmiKit_Reset(); }
    void TearDown() override { WmiKit_Reset(); }
};

TEST_F(WmiKit, AnswersWithSixteenBytesOfEcLogByDefault) {
    WmiInputParams input = {};
    WmiOutputParams output;
    std::memset(&output, 0xAA, sizeof(output));
    EXPECT_EQ(BiosWmi::GetBiosInfo(input, output), 0);
    EXPECT_EQ(output.status, 0);
    EXPECT_EQ(output.dataSize, 16);
    EXPECT_EQ(std::count(output.data, output.data + 16, 0xAA), 0);
    EXPECT_EQ(std::count(output.data + 16, std::end(output.data), 0xAA), 253 - 16);

    WmiOutputParams again = {};
    BiosWmi::GetBiosInfo(input, again);
    EXPECT_TRUE(std::equal(again.data, again.data + 16, output.data));
}

TEST_F(WmiKit, AnswersAsTold) {
    const unsigned char log[] = {0x0A, 0xFF, 0x00};
    WmiKit_SetAnswer(-4, 2, 200, log, sizeof(log));
    WmiInputParams input = {};
    WmiOutputParams output;
    std::memset(&output, 0xAA, sizeof(output));
    EXPECT_EQ(BiosWmi::GetBiosInfo(input, output), -4);
    EXPECT_EQ(output.status, 2);
    EXPECT_EQ(output.dataSize, 200);
    EXPECT_EQ(output.data[0], 0x0A);
    EXPECT_EQ(output.data[1], 0xFF);
    EXPECT_EQ(output.data[2], 0x00);
    EXPECT_EQ(output.data[3], 0xAA);
}

TEST_F(WmiKit, CutsAnAnswerThatIsLongerThanTheRecord) {
    const std::vector<unsigned char> log(300, 0x11);
    WmiKit_SetAnswer(0, 0, 255, log.data(), log.size());
    WmiInputParams input = {};
    WmiOutputParams output = {};
    output.reserved = 0xAA;
    BiosWmi::GetBiosInfo(input, output);
    EXPECT_EQ(std::count(std::begin(output.data), std::end(output.data), 0x11), 253);
    EXPECT_EQ(output.reserved, 0xAA);
}

TEST_F(WmiKit, TellsItsObserverOfRequestsStartsAndStops) {
    struct Seen {
        std::vector<std::string> operations;
        WmiKitRequest request = {};
    } seen;
    WmiKit_SetObserver(
        [](void* context, const char* operation, const void* bytes, size_t length) {
            Seen& notes = *static_cast<Seen*>(context);
            notes.operations.emplace_back(operation);
            if (length == sizeof(WmiKitRequest)) {
                notes.request = *static_cast<const WmiKitRequest*>(bytes);
            } else {
                EXPECT_EQ(bytes, nullptr);
                EXPECT_EQ(length, 0u);
            }
        },
        &seen);
    WmiInputParams input = {0x0C06, 7, {}};
    input.reserved[60] = 0x5A;
    WmiOutputParams output = {};
    {
        BiosEventMonitor monitor;
        monitor.StartEventMonitor([](unsigned int) {});
        BiosWmi::GetBiosInfo(input, output);
        monitor.StopEventMonitor();
    }

    const std::vector<std::string> expected = {"StartEventMonitor", "GetBiosInfo",
                                               "StopEventMonitor"};
    EXPECT_EQ(seen.operations, expected);
    EXPECT_EQ(seen.request.commandWord, 0x0C06);
    EXPECT_EQ(seen.request.subCommand, 7);
    EXPECT_EQ(seen.request.bytes[0], 0x06);
    EXPECT_EQ(seen.request.bytes[1], 0x0C);
    EXPECT_EQ(seen.request.bytes[2], 7);
    EXPECT_EQ(seen.request.bytes[63], 0x5A);
}

}  // namespace
