#include "device_reporter/device_chunks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/device_reporter/sized_records.h"

namespace {

using namespace device_tests;
using DeviceReporter::DeviceInfo;
using DeviceReporter::SerializeDeviceList;
using Chunks = std::vector<std::string>;

// --- One device as JSON ---

/// Every field has a text of its own, so that no two can be mixed up.
const DeviceInfo kDistinct{
    true,         L"the id",          L"the parent", L"the name",     L"the maker",
    L"the class", L"the description", L"the vendor", L"the container"};

TEST(DeviceObject, HasItsKeysInSortedOrderWithoutBlanksAndANameWhereAskedFor) {
    EXPECT_EQ(SerializeDeviceList({kDistinct, DeviceInfo{}}, /*withName=*/true),
              Chunks{R"([{"class":"the class","desc":"the description","device":"the vendor",)"
                     R"("maker":"the maker","name":"the name"},)"
                     R"({"class":"","desc":"","device":"","maker":"","name":""}])"});
    // Equal records are listed as often as they are there.
    EXPECT_EQ(SerializeDeviceList({DeviceInfo{}, kDistinct, DeviceInfo{}}, /*withName=*/false),
              Chunks{R"([{"class":"","desc":"","device":"","maker":""},)"
                     R"({"class":"the class","desc":"the description","device":"the vendor",)"
                     R"("maker":"the maker"},)"
                     R"({"class":"","desc":"","device":"","maker":""}])"});
}

TEST(DeviceObject, OfAnEmptyListIsNotThereAtAll) {
    EXPECT_TRUE(SerializeDeviceList({}, /*withName=*/true).empty());
    EXPECT_TRUE(SerializeDeviceList({}, /*withName=*/false).empty());
}

struct Field {
    std::wstring DeviceInfo::*member;
    const char* begin;  ///< What stands before and behind the text when the others are empty.
    const char* end;
};

const Field kFields[] = {
    {&DeviceInfo::className, R"([{"class":")", R"(","desc":"","device":"","maker":"","name":""}])"},
    {&DeviceInfo::description, R"([{"class":"","desc":")",
     R"(","device":"","maker":"","name":""}])"},
    {&DeviceInfo::vendorId, R"([{"class":"","desc":"","device":")", R"(","maker":"","name":""}])"},
    {&DeviceInfo::manufacturer, R"([{"class":"","desc":"","device":"","maker":")",
     R"(","name":""}])"},
    {&DeviceInfo::name, R"([{"class":"","desc":"","device":"","maker":"","name":")", R"("}])"},
};

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

struct SentText {
    std::wstring text;
    std::string sent;
};

TEST(DeviceObject, HasTheFirst32Utf16UnitsOfEachTextUpToANulAsUtf8AndEscaped) {
    const std::wstring a30(30, L'a');
    for (const auto& [text, sent] : {
             SentText{a30 + L"b", Repeated("a", 30) + "b"},
             SentText{a30 + L"bc", Repeated("a", 30) + "bc"},
             SentText{a30 + L"bcd", Repeated("a", 30) + "bc"},
             SentText{std::wstring(5000, L'a'), Repeated("a", 32)},
             SentText{std::wstring(33, L'\u6771'), Repeated("\xE6\x9D\xB1", 32)},
             // Pairs at the limit, cut in two, and single halves.
             SentText{a30 + L"\xD83D\xDDA8z", Repeated("a", 30) + "\xF0\x9F\x96\xA8"},
             SentText{a30 + L"a\xD83D\xDDA8", Repeated("a", 31) + "\xEF\xBF\xBD"},
             SentText{L"a\xDDA8z", "a\xEF\xBF\xBDz"},
             SentText{L"a\xD83Dz", "a\xEF\xBF\xBDz"},
             SentText{std::wstring(L"before\0after", 12), "before"},
             SentText{std::wstring(L"\0after", 6), ""},
             // Cut before it is escaped.
             SentText{std::wstring(33, L'"'), Repeated("\\\"", 32)},
             SentText{L"\"\\/\b\f\n\r\t\x01\x1F\x7F<&'",
                      "\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F<&'"},
         }) {
        for (const Field& field : kFields) {
            DeviceInfo device;
            device.*field.member = text;
            EXPECT_EQ(SerializeDeviceList({device}, /*withName=*/true),
                      Chunks{field.begin + sent + field.end});
        }
    }
}

// --- Where one chunk ends and the next begins ---

using Counts = std::vector<std::size_t>;

/// How many devices each chunk holds.
Counts CountsPerChunk(const std::vector<DeviceInfo>& devices, bool withName) {
    Counts counts;
    for (const std::string& chunk : SerializeDeviceList(devices, withName)) {
        counts.push_back(0);
        for (std::size_t i = chunk.find("{"); i != std::string::npos; i = chunk.find("{", i + 1)) {
            ++counts.back();
        }
    }
    return counts;
}

TEST(ChunkSize, IsAtMost1020) {
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom - 1, true), true), Counts{5});
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom, true), true), Counts{5});
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom + 1, true), true), (Counts{4, 1}));
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom, false), false), Counts{6});
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(kRoom + 1, false), false), (Counts{5, 1}));
}

TEST(ChunkSize, CountsFromZeroAgainInTheNextChunk) {
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(2 * kRoom, true), true), (Counts{5, 5}));
    EXPECT_EQ(CountsPerChunk(RecordsOfCost(2 * kRoom + 204, true), true), (Counts{5, 5, 1}));
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
    // Counting the text alone, 18 would fit.
    EXPECT_EQ(CountsPerChunk(std::vector<DeviceInfo>(18), true), (Counts{17, 1}));
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

TEST(ChunkSize, CountsTheCutTextsAsTheyAreWritten) {
    // Behind four devices, 144 bytes are left for texts.
    std::vector<DeviceInfo> devices = RecordsOfCost(kRoom, true);
    for (DeviceInfo& device : devices) {
        device.vendorId += std::wstring(1000, L'v');
    }
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
    devices.back() = DeviceInfo{};
    devices.back().name = std::wstring(32, L'\u6771');         // 96 bytes.
    devices.back().description = std::wstring(24, L'\u00E9');  // 48 bytes.
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
    devices.back().vendorId = L"v";
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 1}));
    devices.back() = DeviceInfo{};
    devices.back().name = std::wstring(32, L'"');          // 64 bytes.
    devices.back().description = std::wstring(32, L'\n');  // 64 bytes.
    devices.back().vendorId =
        L"\x01\x02"
        L"1234";  // 16 bytes.
    EXPECT_EQ(CountsPerChunk(devices, true), Counts{5});
    devices.back().vendorId += L'5';
    EXPECT_EQ(CountsPerChunk(devices, true), (Counts{4, 1}));
}

TEST(ChunkSize, LetsTheLargestPossibleDeviceFillAChunkToTheLastByte) {
    // 32 units that are written as six bytes each: nothing makes a text longer. No device is too
    // large for a chunk, and no empty array precedes it.
    DeviceInfo largest;
    for (const Field& field : kFields) {
        largest.*field.member = std::wstring(32, L'\x01');
    }
    const Chunks chunks = SerializeDeviceList({largest}, true);
    ASSERT_EQ(chunks.size(), 1u);
    EXPECT_EQ(chunks[0].size() - 2 + 5, kRoom);
    EXPECT_EQ(CountsPerChunk({DeviceInfo{}, largest, largest, DeviceInfo{}}, true),
              (Counts{1, 1, 1, 1}));
}

}  // namespace
