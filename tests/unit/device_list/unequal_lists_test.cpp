// Lists of different length side by side, each at the boundaries of its chunks.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "unit/device_list/chunk_model.h"
#include "unit/device_list/device_list_test.h"

namespace {

using namespace device_list_test;
using DeviceReporter::DeviceInfo;
using test_support::Event;
using test_support::EventFields;

/// Costs of a whole list: none, one chunk to its last byte, two and three chunks.
constexpr std::size_t kCosts[] = {0, kRoom - 1, kRoom, kRoom + 1, 2 * kRoom, 2 * kRoom + 1};

std::vector<DeviceInfo> ListOfCost(std::size_t cost, bool withName) {
    return cost == 0 ? std::vector<DeviceInfo>{} : RecordsOfCost(cost, withName);
}

struct KeyedChunks {
    const char* key;
    std::vector<std::string> chunks;
};

/// Event i carries the i-th chunk of every list that has one.
std::vector<EventFields> ExpectedEvents(const std::vector<KeyedChunks>& lists) {
    std::vector<EventFields> events;
    for (std::size_t i = 0;; ++i) {
        EventFields fields;
        for (const KeyedChunks& list : lists) {
            if (i < list.chunks.size()) {
                fields.emplace_back(list.key, list.chunks[i]);
            }
        }
        if (fields.empty()) {
            return events;
        }
        events.push_back(fields);
    }
}

class UnequalLists : public DeviceListTest {
protected:
    /// Adds the devices below kSharedContainer and returns what is written of them.
    std::vector<std::string> AddList(const std::wstring& prefix, std::size_t cost, bool withName) {
        const std::vector<DeviceInfo> devices = ListOfCost(cost, withName);
        AddAll(prefix, devices);
        return ExpectedChunks(devices, withName);
    }

    std::vector<EventFields> SentFields() {
        std::vector<EventFields> fields;
        for (const Event& event : Sent()) {
            fields.push_back(event.fields);
        }
        return fields;
    }
};

TEST_F(UnequalLists, OfEveryCombinationGoOutSideBySide) {
    for (const std::size_t hidCost : kCosts) {
        for (const std::size_t bluetoothCost : kCosts) {
            for (const std::size_t otherCost : kCosts) {
                reporter.devices.clear();
                AddRemovable();
                const std::vector<KeyedChunks> lists{
                    {"HIDList", AddList(L"HID\\", hidCost, true)},
                    {"BluetoothList", AddList(L"BTH\\", bluetoothCost, false)},
                    {"DeviceList", AddList(L"USB\\", otherCost, true)}};
                ASSERT_EQ(SentFields(), ExpectedEvents(lists))
                    << hidCost << " " << bluetoothCost << " " << otherCost;
            }
        }
    }
}

TEST_F(UnequalLists, OfThreeTwoAndOneChunksGiveEventsWithThreeTwoAndOneKeys) {
    AddList(L"HID\\", kRoom, true);
    AddList(L"BTH\\", 2 * kRoom + 1, false);
    AddList(L"USB\\", kRoom + 1, true);
    const std::vector<Event> events = Sent();
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(KeysOf(events[0]), (Keys{"HIDList", "BluetoothList", "DeviceList"}));
    EXPECT_EQ(KeysOf(events[1]), (Keys{"BluetoothList", "DeviceList"}));
    EXPECT_EQ(KeysOf(events[2]), Keys{"BluetoothList"});
}

TEST_F(UnequalLists, NeverExceedWhatTheEventLibraryTakes) {
    AddList(L"HID\\", 20 * kRoom, true);
    AddList(L"BTH\\", 3 * kRoom + 1, false);
    Sent();
    EXPECT_TRUE(suite.events.Warnings().empty());
}

}  // namespace
