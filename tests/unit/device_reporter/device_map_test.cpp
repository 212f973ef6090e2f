#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "device_reporter/device_info.h"

namespace {

using DeviceReporter::DeviceInfo;
using DeviceReporter::DeviceMap;

TEST(DeviceRecord, StartsNotRemovableAndWithoutTexts) {
    const DeviceInfo record;
    EXPECT_FALSE(record.isRemovable);
    for (const std::wstring& text :
         {record.instanceId, record.parent, record.name, record.manufacturer, record.className,
          record.description, record.vendorId, record.containerId}) {
        EXPECT_EQ(text, L"");
    }
}

TEST(DeviceRecord, HasItsFieldsInTheOrderOfTheInventory) {
    const DeviceInfo record{true, L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"};
    EXPECT_TRUE(record.isRemovable);
    EXPECT_EQ(record.instanceId, L"1");
    EXPECT_EQ(record.parent, L"2");
    EXPECT_EQ(record.name, L"3");
    EXPECT_EQ(record.manufacturer, L"4");
    EXPECT_EQ(record.className, L"5");
    EXPECT_EQ(record.description, L"6");
    EXPECT_EQ(record.vendorId, L"7");
    EXPECT_EQ(record.containerId, L"8");
}

TEST(DeviceRecord, IsCopiedAsAValue) {
    DeviceInfo original;
    original.name = L"Mouse";
    DeviceInfo copy = original;
    copy.name = L"Keyboard";
    EXPECT_EQ(original.name, L"Mouse");
}

TEST(DeviceMap, YieldsRecordsInTheOrderOfTheKeysUnitsAndNotOfTheirInsertion) {
    // Code points or a language's rules would put the second and the third pair the other way.
    const std::vector<std::wstring> sorted = {L"USB\\A", L"USB\\B",      L"USB\\Z",
                                              L"USB\\a", L"USB\\\xD83D", L"USB\\\xFF5E"};
    DeviceMap devices;
    for (auto id = sorted.rbegin(); id != sorted.rend(); ++id) {
        devices.emplace(*id, DeviceInfo{});
    }
    std::vector<std::wstring> keys;
    for (const auto& [key, record] : devices) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, sorted);
}

}  // namespace
