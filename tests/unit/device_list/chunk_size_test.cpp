// Where one chunk ends and the next begins.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_chunks.h"
#include "unit/device_list/sized_records.h"

namespace {

using namespace device_list_test;
using DeviceReporter::DeviceInfo;
using DeviceReporter::SerializeDeviceList;

/// How many devices each chunk holds.
std::vector<std::size_t> CountsPerChunk(const std::vector<DeviceInfo>& devices, bool withName) {
    std::vector<std::size_t> counts;
    for (const std::string& chunk : SerializeDeviceList(devices, withName)) {
        counts.push_back(NumbersIn(chunk).size());
    }
    return counts;
}

using Counts = std::vector<std::size_t>;
using Numbers = std::vector<std::string>;

TEST(ChunkSize, TakesDevicesOf1019And1020Together) {
    for (const std::size_t cost : {kRoom - 1, kRoom}) {
        EXPECT_EQ(CountsPerChunk(RecordsOfCost(cost, true), true), Counts{5});
        EXPECT_EQ(CountsPerChunk(RecordsOfCost(cost, false), false), Counts{6});
    }
}

TEST(ChunkSize, StartsANewChunkAt1021) {
    const auto chunks = SerializeDeviceList(RecordsOfCost(kRoom + 1, true), true);
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(NumbersIn(chunks[0]), (Numbers{"0000", "0001", "0002", "0003"}));
    EXPECT_EQ(NumbersIn(chunks[1]), Numbers{"0004"});
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom + 1, false), false), (Counts{5, 1}));
}

TEST(ChunkSize, CountsFromZeroAgainInTheNextChunk) {
    // Five records of 204 fill a chunk, so the eleventh is the first of the third.
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(2 * kRoom + 204, true), true), (Counts{5, 5, 1}));
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(2 * kRoom, true), true), (Counts{5, 5}));
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(2 * kRoom + 1, true), true), (Counts{5, 4, 1}));
}

TEST(ChunkSize, CountsTheRecordThatOpensTheNextChunk) {
    std::vector<DeviceInfo> devices = RecordsOfCost(kRoom + 1, true);  // The fifth of 205 flushes.
    for (const std::size_t cost : {204, 204, 204, 203}) {
        devices.push_back(RecordOfCost(cost, true));
    }
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 5}));
    devices.back() = RecordOfCost(204, true);
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 4, 1}));
}

TEST(ChunkSize, AddsFiveToEachDevicesOwnText) {
    // 17 times 55 bytes and 5. Counting the text alone, 18 would fit.
    const std::string object = R"({"class":"","desc":"","device":"","maker":"","name":""})";
    ASSERT_EQ(object.size() + 5, kEmptyCost);
    const auto chunks = SerializeDeviceList(std::vector<DeviceInfo>(18), true);
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(chunks[0].size(), 17 * object.size() + 16 + 2);
    EXPECT_EQ(chunks[1], "[" + object + "]");
}

TEST(ChunkSize, CountsWithoutTheNameWhereItIsNotSent) {
    std::vector<DeviceInfo> devices(20);
    for (DeviceInfo& device : devices) {
        device.name = std::wstring(32, L'n');
    }
    ASSERT_EQ(20 * kEmptyCostWithoutName + 20, kRoom);
    devices.back().vendorId = std::wstring(20, L'v');
    EXPECT_EQ(CountsPerChunk(devices, false), Counts{20});
    devices.back().vendorId = std::wstring(21, L'v');
    EXPECT_EQ(CountsPerChunk(devices, false), (Counts{19, 1}));
}

/// One device whose cost is exactly what four of 204 leave, and one more byte.
std::vector<DeviceInfo> FourAndOneWith(const std::wstring& text) {
    std::vector<DeviceInfo> devices = RecordsOfCost(kRoom, true);
    devices.back() = DeviceInfo{};
    devices.back().name = text;
    return devices;
}

TEST(ChunkSize, CountsBytesOfUtf8) {
    // 204 - 60 leaves 144 bytes, four fields full and 16 of the last.
    std::vector<DeviceInfo> devices = FourAndOneWith(std::wstring(32, L'\u6771'));  // 96 bytes.
    devices.back().description = std::wstring(24, L'\u00E9');                       // 48 bytes.
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
    devices.back().vendorId = L"v";
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 1}));
}

TEST(ChunkSize, CountsEscapesAsTheyAreWritten) {
    std::vector<DeviceInfo> devices = FourAndOneWith(std::wstring(32, L'"'));  // 64 bytes.
    devices.back().description = std::wstring(32, L'\n');                      // 64 bytes.
    devices.back().manufacturer =
        L"\x01\x02"
        L"1234";  // 16 bytes.
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
    devices.back().manufacturer += L'5';
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 1}));
}

TEST(ChunkSize, CountsTheCutTextsNotTheWholeOnes) {
    std::vector<DeviceInfo> devices = RecordsOfCost(kRoom, true);
    for (DeviceInfo& device : devices) {
        device.vendorId += std::wstring(1000, L'v');
    }
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
}

/// 32 units that are written as six bytes each: nothing makes a field longer.
DeviceInfo LargestPossibleDevice() {
    const std::wstring longest(32, L'\x01');
    DeviceInfo device;
    device.vendorId = longest;
    device.className = longest;
    device.description = longest;
    device.manufacturer = longest;
    device.name = longest;
    return device;
}

TEST(ChunkSize, LetsTheLargestPossibleDeviceFillAChunkToTheLastByte) {
    // 55 + 5 * 192 + 5 is 1020: no device is too large for a chunk, and no empty array precedes it.
    const auto chunks = SerializeDeviceList({LargestPossibleDevice()}, true);
    ASSERT_EQ(chunks.size(), 1u);
    EXPECT_EQ(chunks[0].size() - 2 + 5, kRoom);
}

TEST(ChunkSize, GivesEachOfTheLargestDevicesAChunkOfItsOwn) {
    EXPECT_EQ(CountsPerChunk({LargestPossibleDevice(), LargestPossibleDevice()}, true),
              (Counts{1, 1}));
    EXPECT_EQ(CountsPerChunk({DeviceInfo{}, LargestPossibleDevice(), DeviceInfo{}}, true),
              (Counts{1, 1, 1}));
}

}  // namespace
