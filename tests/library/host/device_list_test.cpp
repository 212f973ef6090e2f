#include "host/device_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/device_list_view.h"

namespace host {
namespace {

using std::chrono::hours;

/// A chunk with one device. `name` is null where the payload has none.
std::string Chunk(const std::string& className, const std::string& device, const char* name) {
    return R"([{"class":")" + className + R"(","desc":"d","device":")" + device +
           R"(","maker":"m")" + (name == nullptr ? "" : R"(,"name":")" + std::string(name) + "\"") +
           "}]";
}

TextLines Describe(const DeviceListCollector& lists, int firstNumber = 1) {
    return DescribeDeviceLists(lists.Lists(), firstNumber);
}

TEST(DeviceChunk, IsRefusedWithValuesThatAreNoText) {
    EXPECT_EQ(ParseDeviceChunk(R"([{"class":1}])"), std::nullopt);
    EXPECT_EQ(ParseDeviceChunk(R"(["class"])"), std::nullopt);
    EXPECT_TRUE(ParseDeviceChunk(R"([{"class":"a"}])").has_value());
}

TEST(DeviceListView, HasNoLineWithoutAList) { EXPECT_EQ(Describe({}), TextLines()); }

TEST(DeviceListView, PutsChunksTogetherAgain) {
    DeviceListCollector lists;
    lists.Begin(hours(24));
    lists.Add({kDeviceListEventId,
               {{"HIDList", Chunk("Mouse", "v1", "Maus")},
                {"DisplayList", Chunk("Monitor", "ABC", "字")}}});
    lists.Add({kDeviceListEventId, {{"HIDList", Chunk("Keyboard", "v2", "T")}}});
    lists.Add({kBiosInfoEventId, {{"Product", "not a list"}}});

    EXPECT_EQ(
        Describe(lists, 10),
        (TextLines{"Device lists, put together again from their chunks, with devices by key:",
                   "list      sent at  events  bytes  HIDList  DisplayList",
                   "  10  1d 00:00:00       2    237        2            1", "",
                   "Device list 10 in full:", "  HIDList: 2 devices",
                   "    class     name  desc  maker  device", "    Mouse     Maus  d     m      v1",
                   "    Keyboard  T     d     m      v2", "  DisplayList: 1 device",
                   "    class    name  desc  maker  device",
                   "    Monitor  字    d     m      ABC"}));
}

TEST(DeviceListView, TellsWhatChangedUnderEachKey) {
    DeviceListCollector lists;
    lists.Begin(hours(24));
    lists.Add(
        {kDeviceListEventId,
         {{"HIDList", Chunk("Mouse", "v1", "Maus")}, {"DeviceList", Chunk("USB", "x", "X")}}});
    // The same devices in another order and in other chunks.
    lists.Begin(hours(48));
    lists.Add({kDeviceListEventId, {{"DeviceList", Chunk("USB", "x", "X")}}});
    lists.Add({kDeviceListEventId, {{"HIDList", Chunk("Mouse", "v1", "Maus")}}});
    // A second device like the first; a Bluetooth device, which has no name; and none under the
    // third key.
    lists.Begin(hours(72));
    lists.Add({kDeviceListEventId,
               {{"HIDList", Chunk("Mouse", "v1", "Maus")},
                {"BluetoothList", Chunk("MEDIA", "b", nullptr)}}});
    lists.Add({kDeviceListEventId, {{"HIDList", Chunk("Mouse", "v1", "Maus")}}});

    const TextLines lines = Describe(lists);
    const auto changes = std::find(lines.begin(), lines.end(), "What changed from list to list:");
    ASSERT_GE(lines.end() - changes, 6);
    EXPECT_EQ(TextLines(changes + 1, changes + 6),
              (TextLines{"  new in list 3     HIDList        Mouse  Maus  m  v1",
                         "  new in list 3     BluetoothList  MEDIA  d     m  b",
                         "  gone from list 3  DeviceList     USB    X     m  x", "",
                         "Device list 3 in full:"}));
}

TEST(DeviceListView, SaysSoWhenNothingChanged) {
    DeviceListCollector lists;
    for (const int day : {1, 2}) {
        lists.Begin(hours(24 * day));
        lists.Add({kDeviceListEventId, {{"HIDList", Chunk("Mouse", "v1", "Maus")}}});
    }
    const TextLines lines = Describe(lists);
    const auto changes = std::find(lines.begin(), lines.end(), "What changed from list to list:");
    ASSERT_GE(lines.end() - changes, 2);
    EXPECT_EQ(changes[1], "  nothing");
}

TEST(DeviceListView, CountsWhatCannotBeRead) {
    DeviceListCollector lists;
    lists.Begin(hours(24));
    lists.Add({kDeviceListEventId, {{"HIDList", "{}"}}});
    EXPECT_EQ(Describe(lists),
              (TextLines{"Device lists, put together again from their chunks, with devices by key:",
                         "list      sent at  events  bytes                   HIDList",
                         "   1  1d 00:00:00       1      9  0 and 1 unreadable chunk", "",
                         "Device list 1 in full:", "  HIDList: 0 devices and 1 unreadable chunk",
                         "    class  name  desc  maker  device"}));
}

}  // namespace
}  // namespace host
